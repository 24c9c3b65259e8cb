#include "platform/long_path.h"

#include <windows.h>

namespace tvut {

namespace {

constexpr std::size_t longestPlain = 247; // of a folder that is to be made

bool IsFull(std::wstring_view path) {
    return path.starts_with(L"\\\\") || (path.size() > 2 && path[1] == L':' && path[2] == L'\\');
}

// Without "." and "..", and with backslashes: nothing behind the prefix is looked at any more.
std::wstring FullPath(const std::wstring& path) {
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    return length < full.size() ? full.substr(0, length) : std::wstring(); // another folder is current by now
}

} // namespace

std::wstring PlatformLongPath(std::wstring_view path) {
    std::wstring plain(path);
    if (IsFull(plain) && plain.size() <= longestPlain)
        return plain;
    const std::wstring full = FullPath(plain);
    if (full.size() <= longestPlain || full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\"))
        return plain;
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

} // namespace tvut
