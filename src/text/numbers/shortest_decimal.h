// A double as the shortest decimal that is read as the same one.
#pragma once

#include <cstddef>

namespace tvut {

constexpr std::size_t longestShortestDecimal = 345; // a sign, "0.", 323 zeros and 17 digits

// Writes a finite number without an exponent: a whole one with all its digits, of a fraction the fewest
// digits. Of several the nearest, and of two as near the even one. Returns the end.
char16_t* UtilpPutShortestDecimal(double number, char16_t* out);

} // namespace tvut
