// What a double is made of (IEEE 754, binary64).
#pragma once

#include <bit>
#include <cstdint>

namespace tvut {

// Of a finite double: the mantissa times two to the power of the exponent, exactly.
struct scDoubleParts {
    bool negative;
    std::uint64_t mantissa; // below two to the power of 53
    int exponent;           // -1074 to 971
};

constexpr int mantissaBits = 52; // that are stored; one more is implied
constexpr std::uint64_t impliedBit = 1ull << mantissaBits;
constexpr int leastExponent = -1074;
constexpr std::uint64_t infinityBits = 0x7FFull << mantissaBits;

constexpr scDoubleParts UtilpPartsOf(double number) {
    const auto bits = std::bit_cast<std::uint64_t>(number);
    const auto stored = static_cast<int>(bits >> mantissaBits & 0x7FF);
    const std::uint64_t mantissa = bits & (impliedBit - 1);
    const bool negative = bits >> 63 != 0;
    if (stored == 0)
        return {negative, mantissa, leastExponent};
    return {negative, mantissa | impliedBit, leastExponent + stored - 1};
}

} // namespace tvut
