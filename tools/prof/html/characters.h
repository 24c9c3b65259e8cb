// What kinds of characters a page's syntax tells apart.
#pragma once

#include <algorithm>
#include <string_view>

namespace tool::html {

constexpr bool IsBlank(char16_t c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r' && c != u'\v');
}
constexpr char16_t Lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}
constexpr bool IsLetter(char16_t c) {
    return Lower(c) >= u'a' && Lower(c) <= u'z';
}
constexpr bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

// The second text is in lower case. Other letters than those of ASCII compare by their case.
constexpr bool IsSame(std::u16string_view text, std::u16string_view lower) {
    return std::ranges::equal(text, lower, [](char16_t a, char16_t b) { return Lower(a) == b; });
}

constexpr std::u16string_view Trimmed(std::u16string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace tool::html
