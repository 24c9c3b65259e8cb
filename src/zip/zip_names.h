// Names of entries: how they read, and what Windows can make of them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tvut {

constexpr std::size_t longestZipPath = 32700; // characters, of a file that is unpacked or packed

enum class ZipNameForm : std::uint8_t { utf8, oem };

enum class ZipNameKind {
    fine,
    none,   // nothing is left of it
    unsafe, // absolute, with a drive, or with a component ".."
};

// An entry's name as people see it: decoded, "/" between its components, none of which is empty or ".", and
// "/" at the end of a folder's. The name "/" is the folder that all others lie in. U+0000 reads as U+FFFD.
// Throws std::bad_alloc.
ZipNameKind UtilpReadZipName(std::string_view bytes, ZipNameForm form, std::u16string& name);

// Whether a name is what nearly all are: ASCII, and fine as it stands. Costs less than reading it.
bool UtilpIsPlainZipName(std::string_view bytes) noexcept;

// The path that such a name gets on Windows, with backslashes and without one at its end: what no name may
// hold becomes "_", blanks and dots at a component's end likewise, a device's name gets "_" after it. Each
// component is a bare file name then. Throws std::bad_alloc.
void UtilpMakePossiblePath(std::u16string_view name, std::u16string& path);

// Whether callers may give an entry a name, with "/" or "\" between components, all of them bare file names
// that UTF-8 can express.
bool UtilpCanBeEntryName(std::u16string_view name) noexcept;

} // namespace tvut
