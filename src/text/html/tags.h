// What the tags of a page mean to plain text.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

struct scTag {
    static constexpr std::size_t most = 2; // units that stand in a tag's place

    std::array<char16_t, most> replacement;
    std::uint8_t length; // of the replacement
    std::int8_t skips;   // 1: what follows is not shown; -1: it is again
};

constexpr std::size_t longestTagName = 11;

// By its name, with the slash of a closing tag. Names compare without regard to the case of ASCII letters; a
// tag that means nothing is there, too, with nothing in its place. What follows the name in the text may be
// read, too, up to the end.
const scTag& UtilpFindTag(std::u16string_view name, const char16_t* end);

} // namespace tvut
