// The root of a path: its drive, share or device.
#pragma once

#include <cstddef>
#include <string_view>

namespace tvut {

constexpr std::size_t longestPath = 32767; // characters that the system takes

inline bool UtilpIsSeparator(char16_t unit) noexcept {
    return unit == u'\\' || unit == u'/';
}

enum class PathKind {
    relative,        // to the current folder
    relativeToDrive, // "C:x": to the current folder of a drive
    rooted,          // "\x": on the current drive
    absolute,
};

struct scPathRoot {
    std::size_t length; // with the separator that ends it, if there is one
    PathKind kind;
    bool verbatim; // it begins with \\?\ and the system takes the rest as it stands: only \ separates

    bool Separates(char16_t unit) const noexcept { return unit == u'\\' || (unit == u'/' && !verbatim); }
};

// The longest root that a path begins with, looked at as text. Where a server or a share is missing, the
// root is all of the path.
scPathRoot UtilpRootOf(std::u16string_view path) noexcept;

// Whether a text begins with a letter from A to Z and a colon.
bool UtilpBeginsWithDrive(std::u16string_view text) noexcept;

} // namespace tvut
