// A decimal number as the double that is nearest to it; of two as near, the even one.
#pragma once

#include <cstdint>
#include <string_view>

namespace tvut {

// What a text says: the digits of the whole and the fraction together, times ten to the power of `exponent`
// after `fraction` has moved the point.
struct scDecimal {
    bool negative;
    std::u16string_view whole;    // digits, as many as there are
    std::u16string_view fraction; // likewise
    std::int64_t exponent;        // between plus and minus 2^62
};

// Too large a number is infinite, too small a one zero; both keep the sign.
double UtilpNearestDouble(const scDecimal& decimal);

} // namespace tvut
