// The names are in order, so that one is found by halving. The few that are known without ; are short: of a
// text that no ; ends, its beginnings are looked up from the longest on.
#include "references.h"

#include "characters.h"
#include "hex_digit.h"
#include "named_references.h"

#include <algorithm>

namespace tool::html {

namespace {

constexpr char32_t replacement = 0xFFFD;

// Of the numbers from 0x80: pages give those of code page 1252 for characters that have others.
constexpr char16_t from1252[] = {0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021,
                                 0x2C6,  0x2030, 0x160,  0x2039, 0x152,  0x8D,   0x17D,  0x8F,
                                 0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};

void AppendCharacter(std::u16string& result, char32_t character) {
    if (character >= 0x80 && character < 0xA0)
        character = from1252[character - 0x80];
    if (character == 0 || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000))
        character = replacement;
    if (character < 0x10000) {
        result += static_cast<char16_t>(character);
        return;
    }
    result += static_cast<char16_t>(0xD7C0 + (character >> 10));
    result += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
}

// Each of these takes a reference from a text that begins after its &; returns its length, 0 when it is none.

std::size_t TakeNumber(std::u16string& result, std::u16string_view text) {
    const bool hexadecimal = text.size() > 1 && Lower(text[1]) == u'x';
    const unsigned base = hexadecimal ? 16 : 10;
    const std::size_t start = hexadecimal ? 2 : 1;
    std::size_t at = start;
    char32_t number = 0;
    for (; at < text.size() && HexDigit(text[at]) < base; ++at)
        number = std::min<char32_t>(number * base + HexDigit(text[at]), 0x110000);
    if (at == start)
        return 0;
    AppendCharacter(result, number);
    return at + (at < text.size() && text[at] == u';');
}

const scNamedReference* Find(std::u16string_view text) {
    const auto row = std::ranges::lower_bound(
        namedReferences, text,
        [](const auto& a, const auto& b) { return std::ranges::lexicographical_compare(a, b); },
        &scNamedReference::Name);
    return row != namedReferences.end() && std::ranges::equal(row->Name(), text) ? &*row : nullptr;
}

std::size_t TakeNamed(std::u16string& result, const scNamedReference& reference) {
    result += reference.first;
    if (reference.second)
        result += reference.second;
    return reference.length;
}

// The longest name without ; that the text begins with.
std::size_t TakeBareName(std::u16string& result, std::u16string_view name, Place place) {
    constexpr std::size_t longest = 6; // &Aacute
    for (std::size_t length = std::min(name.size(), longest); length > 1; --length) {
        const scNamedReference* const reference = Find(name.substr(0, length));
        if (reference && reference->isBare)
            return place == Place::attribute && length < name.size() ? 0 : TakeNamed(result, *reference);
    }
    return 0;
}

std::size_t TakeName(std::u16string& result, std::u16string_view text, Place place) {
    std::size_t length = 0;
    while (length < text.size() && length <= longestReferenceName &&
           (IsLetter(text[length]) || IsDigit(text[length])))
        ++length;
    const std::u16string_view name = text.substr(0, length);
    const char16_t after = length < text.size() ? text[length] : u'\0';
    const scNamedReference* const reference = after == u';' ? Find(name) : nullptr;
    if (reference)
        return TakeNamed(result, *reference) + 1;
    return place == Place::attribute && after == u'=' ? 0 : TakeBareName(result, name, place);
}

} // namespace

void AppendResolved(std::u16string& result, std::u16string_view text, Place place) {
    while (!text.empty()) {
        const std::size_t run = std::min(text.find(u'&'), text.size());
        result += text.substr(0, run);
        text.remove_prefix(run);
        if (text.size() < 2)
            break;
        const std::u16string_view rest = text.substr(1);
        const std::size_t length = rest[0] == u'#' ? TakeNumber(result, rest) : TakeName(result, rest, place);
        if (length == 0)
            result += u'&';
        text.remove_prefix(1 + length);
    }
    result += text;
}

} // namespace tool::html
