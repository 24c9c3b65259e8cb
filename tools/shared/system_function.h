// Functions that not every system has, or that few runs need.
#pragma once

#include <windows.h>

#include <string>

namespace tool {

// A function of a library in the system's folder, such as L"\\uxtheme.dll", which stays loaded; null where
// there is none.
template <class Function>
Function SystemFunction(const wchar_t* library, const char* name) {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size())));
    const HMODULE loaded = LoadLibraryW((path + library).c_str());
    return loaded == nullptr
               ? nullptr
               : reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(loaded, name)));
}

} // namespace tool
