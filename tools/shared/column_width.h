// How many columns of a terminal a text takes.
#pragma once

#include <cstddef>
#include <string_view>

namespace tool {

struct scCharacter {
    std::size_t length; // units
    unsigned columns;   // 0: it is put upon the one before it; 2: East Asian characters and pictures; else 1
};

// The character that begins at a place of a text; half of a surrogate pair is one, too.
scCharacter CharacterAt(std::u16string_view text, std::size_t at);

std::size_t ColumnsOf(std::u16string_view text);

} // namespace tool
