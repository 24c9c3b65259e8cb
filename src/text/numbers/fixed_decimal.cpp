// A double is a whole number of 53 bits times a power of two, so everything here is exact: where that power
// is below one, one multiplication by a million and one shift round the decimals; above 64 bits of whole
// part, the digits are taken nine by nine off a big number.
#include "text/numbers/fixed_decimal.h"

#include "text/numbers/big_number.h"
#include "text/numbers/double_parts.h"

#include <array>
#include <cstdint>

namespace tvut {

namespace {

constexpr std::uint32_t million = 1'000'000;
constexpr std::uint32_t billion = 1'000'000'000;

// Exactly this many digits.
char16_t* PutDigits(std::uint32_t number, std::size_t count, char16_t* out) {
    for (std::size_t i = count; i-- != 0; number /= 10)
        out[i] = static_cast<char16_t>(u'0' + number % 10);
    return out + count;
}

std::size_t DigitsOf(std::uint32_t number) {
    std::size_t count = 1;
    for (; number >= 10; number /= 10)
        ++count;
    return count;
}

char16_t* PutWhole(std::uint64_t number, char16_t* out) {
    if (number < billion)
        return PutDigits(static_cast<std::uint32_t>(number), DigitsOf(static_cast<std::uint32_t>(number)),
                         out);
    out = PutWhole(number / billion, out);
    return PutDigits(static_cast<std::uint32_t>(number % billion), 9, out);
}

char16_t* PutWhole(clsBigNumber number, char16_t* out) {
    std::array<std::uint32_t, 35> nines; // the lowest first; the largest double has 309 digits
    std::size_t count = 0;
    while (!number.IsZero())
        nines[count++] = number.DivideBy(billion);
    out = PutWhole(nines[--count], out);
    while (count-- != 0)
        out = PutDigits(nines[count], 9, out);
    return out;
}

struct scFixed {
    std::uint64_t whole;
    std::uint32_t millionths;
};

// The mantissa divided by two to the power of `bits`, one at least, rounded to millionths.
scFixed Rounded(std::uint64_t mantissa, unsigned bits) {
    if (bits <= 40) {
        const std::uint64_t fraction = mantissa & ((1ull << bits) - 1);
        const auto millionths =
            static_cast<std::uint32_t>((fraction * million + (1ull << (bits - 1))) >> bits); // 60 bits
        const bool carries = millionths == million;
        return {(mantissa >> bits) + carries, carries ? 0 : millionths};
    }
    if (bits > 74)
        return {0, 0}; // a million times the mantissa has 73 bits: less than half a millionth
    // That product without its lowest 26 bits, which are below the place that decides about rounding.
    const std::uint64_t high = (mantissa >> 26) * million;
    const std::uint64_t low = (mantissa & ((1u << 26) - 1)) * million;
    const std::uint64_t product = high + (low >> 26);
    const auto all =
        static_cast<std::uint32_t>((product + (1ull << (bits - 27))) >> (bits - 26)); // of 4096 at most
    return {all / million, all % million};
}

} // namespace

char16_t* UtilpPutFixedDecimal(double number, char16_t* out) {
    const scDoubleParts parts = UtilpPartsOf(number);
    if (parts.negative)
        *out++ = u'-';
    scFixed fixed{};
    if (parts.exponent < 0) {
        fixed = Rounded(parts.mantissa, static_cast<unsigned>(-parts.exponent));
        out = PutWhole(fixed.whole, out);
    } else if (parts.exponent <= 11) {
        out = PutWhole(parts.mantissa << parts.exponent, out);
    } else {
        clsBigNumber whole(parts.mantissa);
        whole.ShiftLeft(static_cast<unsigned>(parts.exponent));
        out = PutWhole(whole, out);
    }
    *out++ = u'.';
    return PutDigits(fixed.millionths, 6, out);
}

} // namespace tvut
