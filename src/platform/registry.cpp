// A value may grow between the question for its size and the one for its text: it is asked for until it
// fits. Whoever wrote it may have left the terminator off; the system adds it.
#include "platform/registry.h"

#include <cwchar>

namespace tvut {

std::optional<DWORD> PlatformReadDword(HKEY root, const wchar_t* key, const wchar_t* name) noexcept {
    DWORD value = 0;
    DWORD size = sizeof value;
    if (RegGetValueW(root, key, name, RRF_RT_REG_DWORD, nullptr, &value, &size) != ERROR_SUCCESS)
        return std::nullopt;
    return value;
}

std::wstring PlatformReadText(HKEY root, const wchar_t* key, const wchar_t* name) {
    const DWORD types = RRF_RT_REG_SZ; // expands a REG_EXPAND_SZ into one
    std::wstring text;
    DWORD size = 0;
    LSTATUS status = RegGetValueW(root, key, name, types, nullptr, nullptr, &size);
    while (status == ERROR_MORE_DATA || (status == ERROR_SUCCESS && text.empty() && size > 0)) {
        text.resize(size / sizeof(wchar_t) + 1); // somebody may make it longer meanwhile
        size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        status = RegGetValueW(root, key, name, types, nullptr, text.data(), &size);
    }
    if (status != ERROR_SUCCESS)
        return {};
    text.resize(std::wcslen(text.c_str()));
    return text;
}

} // namespace tvut
