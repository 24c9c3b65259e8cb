// A file's name made of any text, such as a report's title.
#pragma once

#include "text/bounded_text.h"

#include <string_view>

namespace tvut {

constexpr std::size_t longestMadeName = 200;     // characters
constexpr std::size_t longestKeptExtension = 16; // its dot included

// What no name may hold becomes "_", white space single blanks; blanks around and dots at the end go; a
// device's name gets "_" after it. Longer names are cut before their extension. The result is a bare file
// name, "_" when nothing is left, and a name made of it again is the same. Throws std::bad_alloc.
void UtilpMakeFileName(std::u16string_view text, clsBoundedText& name);

} // namespace tvut
