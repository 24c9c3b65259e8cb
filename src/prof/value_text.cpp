// Integers are scanned by hand, because their overflow wraps and the standard library's does not. Doubles are
// the standard library's work both ways; what stands here is where the C runtime, which wrote the files in
// the field, differs from it: ties are rounded away from zero, infinities and NaNs have names, "d" marks an
// exponent, too, and a number out of range is infinite or zero.
#include "prof/value_text.h"

#include "text/digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

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

// The C runtime rounds a tie away from zero where std::to_chars rounds it to even. With six decimals
// the only ties are odd multiples of 1/128: they have exactly seven decimals, the last one a 5.
bool IsTie(double number) {
    const double scaled = std::fabs(number) * 128;
    return scaled < 0x1p53 && std::floor(scaled) == scaled && std::fmod(scaled, 2) == 1;
}

std::to_chars_result WriteTie(double number, std::array<char, 400>& digits) {
    char* next = digits.data();
    if (number < 0)
        *next++ = '-';
    const auto scaled = static_cast<std::uint64_t>(std::fabs(number) * 128);
    next = std::to_chars(next, digits.data() + digits.size(), scaled / 128).ptr;
    *next++ = '.';
    const std::uint64_t decimals = (scaled % 128 * 78125 + 5) / 10;
    for (std::uint64_t place = 100000; place != 0; place /= 10)
        *next++ = static_cast<char>('0' + decimals / place % 10);
    return {next, std::errc{}};
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
    std::array<char, 400> digits;
    const std::to_chars_result result = IsTie(number)
                                            ? WriteTie(number, digits)
                                            : std::to_chars(digits.data(), digits.data() + digits.size(),
                                                            number, std::chars_format::fixed, 6);
    PutDigits(digits.data(), result.ptr);
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

// The part of a text that is a decimal number with optional fraction and exponent.
std::u16string_view NumberPart(std::u16string_view text) {
    std::size_t at = 0;
    const auto digits = [&] {
        const std::size_t first = at;
        while (at < text.size() && IsDigit(text[at]))
            ++at;
        return at - first;
    };
    if (at < text.size() && (text[at] == u'-' || text[at] == u'+'))
        ++at;
    std::size_t count = digits();
    if (at < text.size() && text[at] == u'.') {
        ++at;
        count += digits();
    }
    if (count == 0)
        return {};
    const std::size_t mantissa = at;
    if (at < text.size() && IsExponentMark(text[at])) {
        ++at;
        if (at < text.size() && (text[at] == u'-' || text[at] == u'+'))
            ++at;
        if (digits() == 0)
            at = mantissa;
    }
    return text.substr(0, at);
}

// A number whose exponent is out of range: nothing or infinity, by the place of its leading digit.
double OutOfRange(std::string_view number) {
    const bool negative = number.front() == '-';
    const std::size_t exponentAt = number.find('e');
    std::int32_t exponent = 0;
    if (exponentAt != std::string_view::npos) {
        const char* begin = number.data() + exponentAt + 1;
        begin += *begin == '+';
        if (std::from_chars(begin, number.data() + number.size(), exponent).ec != std::errc{})
            exponent = *begin == '-' ? -1'000'000'000 : 1'000'000'000;
    }
    const std::string_view mantissa = number.substr(0, exponentAt);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t leading = mantissa.find_first_of("123456789");
    const std::int64_t place =
        static_cast<std::int64_t>(point) - static_cast<std::int64_t>(leading) + exponent;
    const double result = place > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return negative ? -result : result;
}

double ConvertNumber(const char* begin, const char* end) {
    double number = 0;
    const auto result = std::from_chars(begin, end, number);
    if (result.ec == std::errc::result_out_of_range)
        return OutOfRange({begin, static_cast<std::size_t>(end - begin)});
    return number;
}

} // namespace

double ProfpScanDouble(std::u16string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    std::u16string_view number = NumberPart(text);
    if (number.empty())
        return 0;
    if (number.front() == u'+')
        number.remove_prefix(1);
    std::array<char, 1100> buffer;
    std::string longBuffer;
    char* digits = buffer.data();
    if (number.size() > buffer.size()) {
        longBuffer.resize(number.size());
        digits = longBuffer.data();
    }
    std::transform(number.begin(), number.end(), digits,
                   [](char16_t c) { return IsExponentMark(c) ? 'e' : static_cast<char>(c); });
    return ConvertNumber(digits, digits + number.size());
}

} // namespace tvut
