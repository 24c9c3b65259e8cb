// Characters by the columns they take, tables that scripts/make-html-tables writes.
#pragma once

#include <span>

namespace tool {

struct scCharacters {
    char32_t first;
    char32_t last;
};

// In ascending order.
extern const std::span<const scCharacters> noColumn;
extern const std::span<const scCharacters> twoColumns;

} // namespace tool
