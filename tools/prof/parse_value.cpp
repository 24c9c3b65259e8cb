// Strict readers of typed values.
#include "parse_value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tool::prof {

namespace {

struct scBoolWord {
    std::string_view word;
    BOOL value;
};

constexpr scBoolWord boolWords[] = {{"true", TRUE}, {"false", FALSE}, {"yes", TRUE}, {"no", FALSE},
                                    {"on", TRUE},   {"off", FALSE},   {"1", TRUE},   {"0", FALSE}};

constexpr std::string_view blanks = " \t";

std::string_view Trimmed(std::string_view text) {
    const std::size_t start = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(start);
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

template <typename Number, typename... Base>
std::optional<Number> ParseWhole(std::string_view text, Base... base) {
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, base...);
    return error == std::errc{} && stop == end ? std::optional{value} : std::nullopt;
}

// The digits after x or 0x; nothing when the text does not begin so.
std::optional<std::string_view> HexDigits(std::string_view text) {
    if (text.starts_with('0'))
        text.remove_prefix(1);
    if (!text.starts_with('x') && !text.starts_with('X'))
        return std::nullopt;
    return text.substr(1);
}

// Decimal in the signed or the unsigned range, or hexadecimal: the bits are what is stored.
template <typename Signed, typename Unsigned, bool wideDecimal>
std::optional<Unsigned> ParseBits(std::string_view text) {
    text = Trimmed(text);
    if (const auto digits = HexDigits(text))
        return ParseWhole<Unsigned>(*digits, 16);
    if (const auto value = ParseWhole<Signed>(text))
        return static_cast<Unsigned>(*value);
    return wideDecimal ? ParseWhole<Unsigned>(text) : std::nullopt;
}

std::string_view WithoutParentheses(std::string_view text) {
    text = Trimmed(text);
    const bool both = text.size() >= 2 && text.starts_with('(') && text.ends_with(')');
    return both ? text.substr(1, text.size() - 2) : text;
}

template <std::size_t count>
std::optional<std::array<INT, count>> ParseNumbers(std::string_view text) {
    std::array<INT, count> numbers{};
    text = WithoutParentheses(text);
    for (std::size_t at = 0; at < count; ++at) {
        const std::size_t comma = text.find(',');
        const bool last = at + 1 == count;
        const auto number = ParseWhole<INT>(Trimmed(text.substr(0, comma)));
        if (!number || last != (comma == std::string_view::npos))
            return std::nullopt;
        numbers[at] = *number;
        text.remove_prefix(last ? text.size() : comma + 1);
    }
    return numbers;
}

bool SameIgnoringCase(std::string_view text, std::string_view lowerCase) {
    return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                      [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; });
}

std::optional<LONG> FarSide(INT nearSide, INT extent) {
    const std::int64_t side = std::int64_t{nearSide} + extent;
    using Limits = std::numeric_limits<LONG>;
    return side >= Limits::min() && side <= Limits::max() ? std::optional{static_cast<LONG>(side)}
                                                          : std::nullopt;
}

} // namespace

std::optional<BOOL> ParseBool(std::string_view text) {
    for (const scBoolWord& known : boolWords)
        if (SameIgnoringCase(Trimmed(text), known.word))
            return known.value;
    return std::nullopt;
}

std::optional<INT> ParseInt(std::string_view text) {
    const auto bits = ParseBits<INT, UINT, false>(text);
    return bits ? std::optional{static_cast<INT>(*bits)} : std::nullopt;
}

std::optional<UINT> ParseIntHex(std::string_view text) {
    return ParseBits<INT, UINT, true>(text);
}

std::optional<INT64> ParseInt64(std::string_view text) {
    const auto bits = ParseBits<INT64, UINT64, true>(text);
    return bits ? std::optional{static_cast<INT64>(*bits)} : std::nullopt;
}

std::optional<double> ParseDouble(std::string_view text) {
    const auto value = ParseWhole<double>(Trimmed(text));
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<POINT> ParsePoint(std::string_view text) {
    const auto numbers = ParseNumbers<2>(text);
    if (!numbers)
        return std::nullopt;
    return POINT{(*numbers)[0], (*numbers)[1]};
}

std::optional<RECT> ParseRect(std::string_view text) {
    const auto numbers = ParseNumbers<4>(text);
    if (!numbers)
        return std::nullopt;
    return RECT{(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]};
}

std::optional<RECT> ParseRectLtwh(std::string_view text) {
    const auto numbers = ParseNumbers<4>(text);
    if (!numbers)
        return std::nullopt;
    const auto [left, top, width, height] = *numbers;
    const auto right = FarSide(left, width);
    const auto bottom = FarSide(top, height);
    return right && bottom ? std::optional{RECT{left, top, *right, *bottom}} : std::nullopt;
}

std::optional<COLORREF> ParseColor(std::string_view text) {
    if (const auto digits = HexDigits(Trimmed(text))) {
        const auto value = ParseWhole<UINT>(*digits, 16);
        return value && *value <= 0xffffff ? std::optional<COLORREF>{*value} : std::nullopt;
    }
    const auto numbers = ParseNumbers<3>(text);
    const auto isByte = [](INT number) { return number >= 0 && number <= 255; };
    if (!numbers || !std::all_of(numbers->begin(), numbers->end(), isByte))
        return std::nullopt;
    return RGB((*numbers)[0], (*numbers)[1], (*numbers)[2]);
}

} // namespace tool::prof
