// A double as text with six decimals, exactly as the C runtime's "%f" writes it.
#pragma once

#include <cstddef>

namespace tvut {

constexpr std::size_t longestFixedDecimal = 317; // a sign, 309 digits, the point and the decimals

// Writes a finite number; ties are rounded away from zero. Returns the end.
char16_t* UtilpPutFixedDecimal(double number, char16_t* out);

} // namespace tvut
