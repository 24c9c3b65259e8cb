// Comparison of names without regard to case, as the file system does it.
#pragma once

#include <string_view>

namespace tvut {

// Less than, equal to or greater than 0. By code unit, after the system's own upper-case table: the
// same in every language and for every user.
int PlatformCompareIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept;

// Puts the upper-case letters of a text, unit by unit after the same table, where there is room for as many
// units: texts are the same without regard to case when these are.
void PlatformToUpperCase(std::u16string_view text, char16_t* upper) noexcept;

} // namespace tvut
