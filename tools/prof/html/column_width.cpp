#include "column_width.h"

#include "column_ranges.h"

#include <algorithm>

namespace tool::html {

namespace {

bool IsAmong(char32_t character, std::span<const scCharacters> ranges) {
    const auto range = std::ranges::lower_bound(ranges, character, {}, &scCharacters::last);
    return range != ranges.end() && range->first <= character;
}

} // namespace

unsigned ColumnsOf(char32_t character) {
    if (character < 0x300)
        return 1;
    if (IsAmong(character, noColumn))
        return 0;
    return IsAmong(character, twoColumns) ? 2 : 1;
}

} // namespace tool::html
