// Text as lenient reading sees it: blanks, marks of direction, letter case and digits make no difference.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tvut {

bool UtilpIsBlank(char16_t unit) noexcept;         // all of Unicode's Zs, and the tab
bool UtilpIsDirectionMark(char16_t unit) noexcept; // takes no room
bool UtilpIsLetter(char16_t unit) noexcept;        // of any script, roughly: no punctuation, no digit

constexpr bool UtilpIsDateSeparator(char16_t unit) noexcept {
    return unit == u'.' || unit == u'/' || unit == u'-' || unit == u',' || unit == u'\u060C';
}
constexpr bool UtilpIsTimeSeparator(char16_t unit) noexcept {
    return unit == u':' || unit == u'.';
}

// The digits of a locale, 0 to 9. ASCII ones need no folding.
using scNativeDigits = std::array<char32_t, 10>;

// Writes a text folded, where there is room for as many units: runs of blanks become one, at the ends none;
// marks of direction vanish, digits become ASCII, letters upper case. Returns its length.
std::size_t UtilpFold(std::u16string_view text, const scNativeDigits& digits, char16_t* folded) noexcept;

} // namespace tvut
