// Paths as the system takes them, whatever their length.
#pragma once

#include <string>
#include <string_view>

namespace tvut {

// Plain paths end at 259 characters, those of folders at 247. A path whose full form is longer, or nearly
// so, is given in that form after "\\?\", which has no such limit; any other as it is. Throws
// std::bad_alloc.
std::wstring PlatformLongPath(std::wstring_view path);

// The full form of a path, without "." and "..", and with backslashes; empty when the system cannot tell.
// Throws std::bad_alloc.
std::wstring PlatformFullPath(std::wstring_view path);

// A full path without "\\?\" at its beginning, where it means the same without it. Throws std::bad_alloc.
std::wstring PlatformPlainPath(std::wstring full);

// A full path with what lifts the limit, also from what lies below it: the two put together.
struct scVerbatimPath {
    std::wstring_view prefix;
    std::wstring_view rest;
};
scVerbatimPath PlatformVerbatimPath(std::wstring_view full) noexcept;

} // namespace tvut
