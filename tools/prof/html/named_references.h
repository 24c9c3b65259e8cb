// The names of character references, a table that scripts/make-html-tables writes.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tool::html {

extern const char* const namesOfReferences;

struct scNamedReference {
    std::uint16_t at; // where the name begins in namesOfReferences; it stands there without & and ;
    std::uint8_t length;
    bool isBare; // also known without ;
    char16_t first;
    char16_t second; // 0: there is one unit only

    std::string_view Name() const { return {namesOfReferences + at, length}; }
};

constexpr std::size_t longestReferenceName = 31;

// In the order of the names' bytes.
extern const std::span<const scNamedReference> namedReferences;

} // namespace tool::html
