// What stands before an item of a numbered list.
#pragma once

#include <cstdint>
#include <string>

namespace tool::html {

// "3.", or of the styles a, A, i and I "c.", "C.", "iii.", "III."; numbers that these do not have are
// decimal.
std::u16string ListMarker(std::int32_t number, char16_t style);

} // namespace tool::html
