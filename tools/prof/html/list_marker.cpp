#include "list_marker.h"

#include "characters.h"

#include <array>
#include <string_view>

namespace tool::html {

namespace {

std::u16string Decimal(std::int32_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

std::u16string Letters(std::int32_t number, char16_t first) {
    std::u16string letters;
    for (; number > 0; number = (number - 1) / 26)
        letters.insert(letters.begin(), static_cast<char16_t>(first + (number - 1) % 26));
    return letters;
}

std::u16string Roman(std::int32_t number) {
    struct scNumeral {
        std::int32_t value;
        std::u16string_view text;
    };
    constexpr std::array<scNumeral, 13> numerals{{{1000, u"m"},
                                                  {900, u"cm"},
                                                  {500, u"d"},
                                                  {400, u"cd"},
                                                  {100, u"c"},
                                                  {90, u"xc"},
                                                  {50, u"l"},
                                                  {40, u"xl"},
                                                  {10, u"x"},
                                                  {9, u"ix"},
                                                  {5, u"v"},
                                                  {4, u"iv"},
                                                  {1, u"i"}}};
    std::u16string text;
    for (const scNumeral& numeral : numerals) {
        for (; number >= numeral.value; number -= numeral.value)
            text += numeral.text;
    }
    return text;
}

std::u16string Number(std::int32_t number, char16_t style) {
    constexpr std::int32_t mostRoman = 3999;
    if (Lower(style) == u'a' && number > 0)
        return Letters(number, style);
    if (Lower(style) != u'i' || number <= 0 || number > mostRoman)
        return Decimal(number);
    std::u16string text = Roman(number);
    if (style == u'I')
        std::ranges::transform(text, text.begin(), [](char16_t c) { return static_cast<char16_t>(c - 32); });
    return text;
}

} // namespace

std::u16string ListMarker(std::int32_t number, char16_t style) {
    return Number(number, style) + u'.';
}

} // namespace tool::html
