#include "column_width.h"

#include "column_ranges.h"

#include <algorithm>

namespace tool {

namespace {

bool IsAmong(char32_t character, std::span<const scCharacters> ranges) {
    const auto range = std::ranges::lower_bound(ranges, character, {}, &scCharacters::last);
    return range != ranges.end() && range->first <= character;
}

unsigned ColumnsOfCharacter(char32_t character) {
    constexpr char32_t firstCombining = 0x300; // most texts have none beyond
    if (character < firstCombining)
        return 1;
    if (IsAmong(character, noColumn))
        return 0;
    return IsAmong(character, twoColumns) ? 2 : 1;
}

} // namespace

scCharacter CharacterAt(std::u16string_view text, std::size_t at) {
    const char32_t unit = text[at];
    if (unit < 0xD800 || unit > 0xDBFF || at + 1 == text.size() || (text[at + 1] & 0xFC00) != 0xDC00)
        return {1, ColumnsOfCharacter(unit)};
    return {2, ColumnsOfCharacter(0x10000 + ((unit - 0xD800) << 10) + (text[at + 1] - 0xDC00u))};
}

std::size_t ColumnsOf(std::u16string_view text) {
    std::size_t columns = 0;
    for (std::size_t at = 0; at < text.size();) {
        const scCharacter character = CharacterAt(text, at);
        columns += character.columns;
        at += character.length;
    }
    return columns;
}

} // namespace tool
