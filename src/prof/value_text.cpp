// Everything is as the C runtime does it, which wrote the files in the field: an integer that overflows
// wraps, infinities and NaNs have names, and "d" marks an exponent, too.
#include "prof/value_text.h"

#include "text/digits.h"
#include "text/numbers/decimal_double.h"
#include "text/numbers/fixed_decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tvut {

namespace {

// What the C runtime skips before a number: the controls of white space and Unicode's space separators.
bool IsBlank(char16_t c) {
    if (c < 0x80)
        return c == u' ' || (c >= 0x09 && c <= 0x0D);
    return c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 ||
           c == 0x202F || c == 0x205F || c == 0x3000;
}

bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

} // namespace

// ---- Writing ----------------------------------------------------------------------------------

void clsValueText::PutDigits(const char* begin, const char* end) {
    for (; begin != end; ++begin)
        Put(static_cast<char16_t>(*begin));
}

void clsValueText::PutDecimal(std::int32_t number) {
    std::array<char, 12> digits;
    PutDigits(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void clsValueText::PutUnsigned(std::uint64_t number) {
    std::array<char, 24> digits;
    PutDigits(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void clsValueText::PutHexadecimal(std::uint64_t number, std::size_t digits) {
    std::size_t count = 1;
    for (std::uint64_t rest = number >> 4; rest != 0; rest >>= 4)
        ++count;
    count = std::max(count, digits);
    while (count-- != 0)
        Put(u"0123456789ABCDEF"[number >> (4 * count) & 0xF]);
}

void clsValueText::PutFixed(double number) {
    if (!std::isfinite(number)) {
        if (std::signbit(number))
            Put(u'-');
        Put(std::isinf(number) ? u"1.#INF00" : std::signbit(number) ? u"1.#IND00" : u"1.#QNAN0");
        return;
    }
    length_ = static_cast<std::size_t>(UtilpPutFixedDecimal(number, text_.data() + length_) - text_.data());
}

// ---- Scanning ---------------------------------------------------------------------------------

template <unsigned base, class Unsigned>
bool clsValueScanner::Integer(Unsigned& number) {
    while (next_ != end_ && IsBlank(*next_))
        ++next_;
    const bool negative = next_ != end_ && *next_ == u'-';
    if (negative || (next_ != end_ && *next_ == u'+'))
        ++next_;
    if (base == 16 && end_ - next_ >= 2 && *next_ == u'0' && (next_[1] | 0x20) == u'x')
        next_ += 2;
    const char16_t* const first = next_;
    Unsigned value = 0;
    for (; next_ != end_; ++next_) {
        const unsigned digit = UtilpDigitOf(*next_);
        if (digit >= base)
            break;
        value = value * base + digit;
    }
    if (next_ == first)
        return false;
    number = negative ? Unsigned{0} - value : value;
    return true;
}

template bool clsValueScanner::Integer<10>(std::uint32_t&);
template bool clsValueScanner::Integer<10>(std::uint64_t&);
template bool clsValueScanner::Integer<16>(std::uint32_t&);
template bool clsValueScanner::Integer<16>(std::uint64_t&);

namespace {

// The C runtime takes a "d" for an exponent, too.
bool IsExponentMark(char16_t c) {
    return (c | 0x20) == u'e' || (c | 0x20) == u'd';
}

// Takes the digits at the front of a text.
std::u16string_view TakeDigits(std::u16string_view& text) {
    std::size_t count = 0;
    while (count < text.size() && IsDigit(text[count]))
        ++count;
    const std::u16string_view digits = text.substr(0, count);
    text.remove_prefix(count);
    return digits;
}

// Takes a sign, and returns whether it was a minus.
bool TakeSign(std::u16string_view& text) {
    const bool negative = text.starts_with(u'-');
    if (negative || text.starts_with(u'+'))
        text.remove_prefix(1);
    return negative;
}

// What comes after an exponent mark; 0 without digits.
std::int64_t Exponent(std::u16string_view text) {
    constexpr std::int64_t beyondAll = 1'000'000'000'000; // more digits than that has no text
    const bool negative = TakeSign(text);
    std::int64_t exponent = 0;
    for (const char16_t c : TakeDigits(text))
        exponent = std::min(exponent * 10 + (c - u'0'), beyondAll);
    return negative ? -exponent : exponent;
}

} // namespace

double ProfpScanDouble(std::u16string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    scDecimal number{};
    number.negative = TakeSign(text);
    number.whole = TakeDigits(text);
    if (text.starts_with(u'.')) {
        text.remove_prefix(1);
        number.fraction = TakeDigits(text);
    }
    if (number.whole.empty() && number.fraction.empty())
        return 0;
    if (!text.empty() && IsExponentMark(text.front()))
        number.exponent = Exponent(text.substr(1));
    return UtilpNearestDouble(number);
}

} // namespace tvut
