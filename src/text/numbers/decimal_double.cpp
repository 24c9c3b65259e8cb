// Three ways, from the cheapest. A number of 53 bits and a power of ten that is a double itself take one
// exact multiplication or division. Otherwise the first 19 digits times a power of ten, in 64 bits that are
// always cut and never rounded up, give a lower bound; a few units above it lies an upper one. Nearly always
// both round to the same double. Where they do not, the number is compared exactly with what is halfway
// between the two.
#include "text/numbers/decimal_double.h"

#include "text/numbers/big_number.h"
#include "text/numbers/double_parts.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tvut {

namespace {

// ---- Powers of ten ----------------------------------------------------------------------------

constexpr int exactDoubles = 23; // powers of ten below this are doubles
constexpr std::array<double, exactDoubles> powersAsDoubles = [] {
    std::array<double, exactDoubles> powers{};
    double power = 1;
    for (double& each : powers) {
        each = power;
        power *= 10;
    }
    return powers;
}();

// The highest 64 bits of a number, cut, and what they are to be multiplied with: two to the power of the
// exponent.
struct scScaled {
    std::uint64_t bits; // the highest one is set
    int exponent;
};

constexpr scScaled Normalized(std::uint64_t bits, int exponent) {
    const int zeros = std::countl_zero(bits);
    return {bits << zeros, exponent - zeros};
}

constexpr int powerStep = 20; // less than this is a power in 64 bits
constexpr int leastPower = -360;
constexpr int mostPower = 300;

constexpr scScaled PowerOfTen(int power) {
    clsBigNumber number(1);
    if (power >= 0) {
        number.MultiplyByPowerOfFive(static_cast<unsigned>(power));
        number.ShiftLeft(64);
        return {number.Top(), static_cast<int>(number.Bits()) - 128 + power};
    }
    constexpr int shift = 1024; // leaves more than 64 bits
    number.ShiftLeft(shift);
    for (int left = -power; left != 0; left -= 10)
        number.DivideBy(9'765'625); // what is cut in steps is as if it was cut at once
    return {number.Top(), static_cast<int>(number.Bits()) - 64 - shift + power};
}

template <std::size_t count>
constexpr std::array<scScaled, count> PowersOfTen(int least, int step) {
    std::array<scScaled, count> powers{};
    for (scScaled& each : powers) {
        each = PowerOfTen(least);
        least += step;
    }
    return powers;
}

constexpr auto smallPowers = PowersOfTen<powerStep>(0, 1);
constexpr auto largePowers = PowersOfTen<(mostPower - leastPower) / powerStep + 1>(leastPower, powerStep);

// The upper half of the product.
constexpr std::uint64_t MultiplyHigh(std::uint64_t one, std::uint64_t other) {
    const std::uint64_t oneLow = static_cast<std::uint32_t>(one);
    const std::uint64_t oneHigh = one >> 32;
    const std::uint64_t otherLow = static_cast<std::uint32_t>(other);
    const std::uint64_t otherHigh = other >> 32;
    const std::uint64_t crossed = oneHigh * otherLow + (oneLow * otherLow >> 32);
    const std::uint64_t middle = oneLow * otherHigh + static_cast<std::uint32_t>(crossed);
    return oneHigh * otherHigh + (crossed >> 32) + (middle >> 32);
}

constexpr scScaled Product(const scScaled& one, const scScaled& other) {
    return Normalized(MultiplyHigh(one.bits, other.bits), one.exponent + other.exponent + 64);
}

// ---- Digits -----------------------------------------------------------------------------------

class clsWord {
  public:
    explicit clsWord(std::uint64_t value) : value_(value) {}
    void MultiplyAdd(std::uint32_t factor, std::uint32_t addend) { value_ = value_ * factor + addend; }
    std::uint64_t Value() const { return value_; }

  private:
    std::uint64_t value_;
};

// The first significant digits, so many at most, and the power of ten that the last of them stands for.
template <class Number, std::size_t most>
struct scLeading {
    Number number{0};
    std::int64_t power;
    std::size_t digits = 0;
    bool isCut = false; // a digit that is not zero comes after them

    explicit scLeading(const scDecimal& decimal)
        : power(decimal.exponent - static_cast<std::int64_t>(decimal.fraction.size())) {
        Take(decimal.whole);
        Take(decimal.fraction);
    }

    void Take(std::u16string_view text) {
        if (digits == 0)
            text.remove_prefix(std::min(text.find_first_not_of(u'0'), text.size()));
        while (!text.empty() && digits < most)
            TakeSome(text);
        power += static_cast<std::int64_t>(text.size());
        isCut = isCut || text.find_first_not_of(u'0') != text.npos;
    }

    void TakeSome(std::u16string_view& text) {
        const std::size_t count = std::min({text.size(), most - digits, std::size_t{9}}); // what 32 bits hold
        std::uint32_t some = 0;
        std::uint32_t scale = 1;
        for (const char16_t c : text.substr(0, count)) {
            some = some * 10 + static_cast<std::uint32_t>(c - u'0');
            scale *= 10;
        }
        number.MultiplyAdd(scale, some);
        digits += count;
        text.remove_prefix(count);
    }
};

using scHead = scLeading<clsWord, 19>; // what 64 bits hold
// What is halfway between two doubles has 767 significant digits at most. Of further ones it only counts
// whether they are all zero.
using scExact = scLeading<clsBigNumber, 768>;

// ---- Exactly ----------------------------------------------------------------------------------

// The number against what is halfway between a double and the next larger one.
std::strong_ordering AgainstHalfway(const scDecimal& decimal, std::uint64_t bits) {
    scExact exact(decimal);
    if (exact.isCut) {
        exact.number.MultiplyAdd(10, 1);
        --exact.power;
    }
    const scDoubleParts parts = UtilpPartsOf(std::bit_cast<double>(bits));
    clsBigNumber halfway(2 * parts.mantissa + 1);
    // Both sides without their powers of two, then with what the one has more of them.
    const auto power = static_cast<int>(exact.power);
    if (power >= 0)
        exact.number.MultiplyByPowerOfFive(static_cast<unsigned>(power));
    else
        halfway.MultiplyByPowerOfFive(static_cast<unsigned>(-power));
    const int shift = power - (parts.exponent - 1);
    if (shift >= 0)
        exact.number.ShiftLeft(static_cast<unsigned>(shift));
    else
        halfway.ShiftLeft(static_cast<unsigned>(-shift));
    return exact.number <=> halfway;
}

// ---- Rounding ---------------------------------------------------------------------------------

constexpr int scaledBits = 62;
constexpr int usuallyDropped = scaledBits - (mantissaBits + 1); // fewer remain of subnormal numbers

// Without its lowest bits.
constexpr std::uint64_t Rounded(std::uint64_t bits, int dropped) {
    const std::uint64_t half = 1ull << (dropped - 1);
    const std::uint64_t kept = bits >> dropped;
    const std::uint64_t rest = bits & (2 * half - 1);
    return kept + (rest > half || (rest == half && kept % 2 != 0));
}

// The double of a mantissa as the bits that it is stored in. A mantissa that was rounded up to one bit more
// carries by itself.
std::uint64_t Stored(std::uint64_t mantissa, int exponent) {
    return std::min((static_cast<std::uint64_t>(exponent - leastExponent) << mantissaBits) + mantissa,
                    infinityBits);
}

// The number between 1e-324 and 1e309.
std::uint64_t NearestBits(const scDecimal& decimal, const scHead& head) {
    const auto power = static_cast<unsigned>(static_cast<int>(head.power) - leastPower);
    const scScaled number = Normalized(head.number.Value(), 0);
    const scScaled scaled =
        Product(Product(number, smallPowers[power % powerStep]), largePowers[power / powerStep]);
    // In units of 62 bits: the two products and the power are cut by less than 2 together and the bits here
    // by one; digits that are left out are one unit in a number of 60 bits, 5 units here.
    const std::uint64_t low = scaled.bits >> 2;
    const std::uint64_t high = low + (head.isCut ? 8 : 3);
    const int exponent = std::max(scaled.exponent + 2 + usuallyDropped, leastExponent);
    const int dropped = exponent - (scaled.exponent + 2);
    if (dropped > 63)
        return 0; // less than half of the smallest double
    std::uint64_t below;
    std::uint64_t above;
    if (dropped == usuallyDropped) {
        below = Stored(Rounded(low, usuallyDropped), exponent);
        above = Stored(Rounded(high, usuallyDropped), exponent);
    } else {
        below = Rounded(low, dropped);
        above = Rounded(high, dropped);
    }
    if (below == above)
        return below;
    const std::strong_ordering order = AgainstHalfway(decimal, below);
    return order > 0 || (order == 0 && below % 2 != 0) ? above : below;
}

std::uint64_t NearestBits(const scDecimal& decimal) {
    const scHead head(decimal);
    const std::uint64_t number = head.number.Value();
    if (number == 0)
        return 0;
    if (!head.isCut && number <= 2 * impliedBit && head.power > -exactDoubles && head.power < exactDoubles) {
        const auto exact = static_cast<double>(static_cast<std::int64_t>(number));
        return std::bit_cast<std::uint64_t>(
            head.power < 0 ? exact / powersAsDoubles[static_cast<std::size_t>(-head.power)]
                           : exact * powersAsDoubles[static_cast<std::size_t>(head.power)]);
    }
    const std::int64_t place =
        head.power + static_cast<std::int64_t>(head.digits); // it is below ten to this power
    if (place < -323)
        return 0;
    if (place > 309)
        return infinityBits;
    return NearestBits(decimal, head);
}

} // namespace

double UtilpNearestDouble(const scDecimal& decimal) {
    return std::bit_cast<double>(NearestBits(decimal) | std::uint64_t{decimal.negative} << 63);
}

} // namespace tvut
