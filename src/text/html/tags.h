// What the tags of a page mean to plain text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

struct scTag {
    std::string_view name;        // with the slash of a closing tag
    std::string_view replacement; // what stands in the tag's place
    std::int8_t skips;            // 1: what follows is not shown; -1: it is again
};

constexpr std::size_t longestTagName = 11;

// Names compare without regard to the case of ASCII letters; null for tags that mean nothing. What follows
// the name in the text may be read, too, up to the end.
const scTag* UtilpFindTag(std::u16string_view name, const char16_t* end);

} // namespace tvut
