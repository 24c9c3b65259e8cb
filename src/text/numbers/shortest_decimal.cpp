// Digits are taken off the number by exact division, until what is left is within half of the distance to the
// next double: R. Burger and R. Dybvig, "Printing floating-point numbers quickly and accurately", 1996. For
// what is not printed often; a double in the hundreds takes some microseconds.
#include "text/numbers/shortest_decimal.h"

#include "text/numbers/big_number.h"
#include "text/numbers/double_parts.h"
#include "text/numbers/fixed_decimal.h"

namespace tvut {

namespace {

// A number, and how far from it the decimals reach that are read as it; all over the same unit.
struct scRange {
    clsBigNumber number;
    clsBigNumber below;
    clsBigNumber above;
    clsBigNumber unit;
    bool hasEnds; // the ends are read as it, too

    explicit scRange(const scDoubleParts& parts)
        : number(parts.mantissa * 4), below(2), above(2), unit(4), hasEnds(parts.mantissa % 2 == 0) {
        unit.ShiftLeft(static_cast<unsigned>(-parts.exponent));
        if (parts.mantissa == impliedBit && parts.exponent > leastExponent)
            below = clsBigNumber(1); // the next smaller double is half as far
    }

    void TimesTen() {
        for (clsBigNumber* each : {&number, &below, &above})
            each->MultiplyAdd(10, 0);
    }
    bool ReachesZero() const { return number < below || (hasEnds && number == below); }
    bool ReachesUnit() const {
        clsBigNumber end = number;
        end.Add(above);
        return end > unit || (hasEnds && end == unit);
    }
    unsigned TakeDigit() {
        unsigned digit = 0;
        for (; number >= unit; ++digit)
            number.Subtract(unit);
        return digit;
    }
    // Whether the last digit is to be one more.
    bool RoundsUp(unsigned digit) const {
        if (!ReachesZero() || !ReachesUnit())
            return ReachesUnit();
        clsBigNumber twice = number;
        twice.Add(number);
        return twice > unit || (twice == unit && digit % 2 != 0);
    }
};

char16_t* PutFraction(const scDoubleParts& parts, char16_t* out) {
    scRange range(parts);
    int wholeDigits = 0;
    for (; range.ReachesUnit(); ++wholeDigits)
        range.unit.MultiplyAdd(10, 0);
    if (wholeDigits == 0)
        *out++ = u'0';
    for (int place = wholeDigits;; --place) {
        if (place == 0)
            *out++ = u'.';
        range.TimesTen();
        const unsigned digit = range.TakeDigit();
        const bool isLast = range.ReachesZero() || range.ReachesUnit();
        *out++ = static_cast<char16_t>(u'0' + digit + (isLast && range.RoundsUp(digit)));
        if (isLast)
            return out;
    }
}

} // namespace

char16_t* UtilpPutShortestDecimal(double number, char16_t* out) {
    const scDoubleParts parts = UtilpPartsOf(number);
    const bool isWhole =
        parts.mantissa == 0 || parts.exponent >= 0 || std::countr_zero(parts.mantissa) >= -parts.exponent;
    if (isWhole)
        return UtilpPutFixedDecimal(number, out) - 7; // without the point and the decimals
    if (parts.negative)
        *out++ = u'-';
    return PutFraction(parts, out);
}

} // namespace tvut
