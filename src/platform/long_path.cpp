// The system takes a path of more than 247 characters only in its verbatim form, which it does not
// normalise. So a path stays as it is while it is short, and is made full first where it is not: a relative
// path may be short and yet lead far.
#include "platform/long_path.h"

#include "platform/system_text.h"

namespace tvut {

namespace {

constexpr std::size_t longestPlain = 247; // of a folder that is to be made

bool IsFull(std::wstring_view path) {
    return path.starts_with(L"\\\\") || (path.size() > 2 && path[1] == L':' && path[2] == L'\\');
}

} // namespace

std::wstring PlatformFullPath(std::wstring_view path) {
    const std::wstring from(path);
    return PlatformText(
        [&](wchar_t* text, DWORD size) { return GetFullPathNameW(from.c_str(), size, text, nullptr); });
}

scVerbatimPath PlatformVerbatimPath(std::wstring_view full) noexcept {
    if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\"))
        return {{}, full};
    if (full.starts_with(L"\\\\"))
        return {L"\\\\?\\UNC", full.substr(1)};
    return {L"\\\\?\\", full};
}

std::wstring PlatformLongPath(std::wstring_view path) {
    std::wstring plain(path);
    if (IsFull(plain) && plain.size() <= longestPlain)
        return plain;
    const std::wstring full = PlatformFullPath(plain);
    const auto [prefix, rest] = PlatformVerbatimPath(full);
    return full.size() <= longestPlain || prefix.empty() ? plain : std::wstring(prefix).append(rest);
}

} // namespace tvut
