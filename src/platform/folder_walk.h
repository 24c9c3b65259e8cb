// Removing folders with all that is in them.
#pragma once

#include <string_view>
#include <windows.h>

namespace tvut {

constexpr ULONGLONG noDeadline = ~0ull;

// Remove what a full path names, as PlatformLongPath returns it: a file, a link, or a folder with all that is
// in it. Links are removed themselves and never followed, even where somebody exchanges a folder for one
// meanwhile. Read-only is taken off what is removed. What cannot be removed stays, and the rest goes; past a
// moment of GetTickCount64 all that is left stays. Result: 0 when nothing is left, also where there was
// nothing; else the first error, ERROR_TIMEOUT for the moment. Needs no memory but pages of its own, and
// kernel32 alone.
DWORD PlatformRemoveTree(const wchar_t* path, ULONGLONG deadline) noexcept;

// The same for what is in a folder, except for one name in it.
DWORD PlatformEmptyFolder(const wchar_t* path, std::wstring_view except, ULONGLONG deadline) noexcept;

} // namespace tvut
