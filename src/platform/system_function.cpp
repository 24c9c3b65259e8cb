// The full path keeps a library of the same name beside the host program from being loaded in its place.
#include "platform/system_function.h"

#include <array>
#include <cwchar>

namespace tvut {

HMODULE PlatformLoadSystemLibrary(const wchar_t* library) noexcept {
    std::array<wchar_t, MAX_PATH + 32> path;
    const UINT length = GetSystemDirectoryW(path.data(), MAX_PATH);
    if (length == 0 || length >= MAX_PATH || length + 1 + std::wcslen(library) >= path.size())
        return nullptr;
    path[length] = L'\\';
    std::wcscpy(path.data() + length + 1, library);
    // What it needs itself is looked for beside it, too, not beside the host program.
    return LoadLibraryExW(path.data(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

FARPROC PlatformFindSystemFunction(const wchar_t* library, const char* name, WORD number) noexcept {
    const HMODULE loaded = PlatformLoadSystemLibrary(library);
    if (!loaded)
        return nullptr;
    const FARPROC named = GetProcAddress(loaded, name);
    return named || number == 0 ? named : GetProcAddress(loaded, MAKEINTRESOURCEA(number));
}

} // namespace tvut
