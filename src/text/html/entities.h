// The named characters of HTML that masking and demasking know, and what each unit is masked as.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

constexpr std::size_t longestReference = 8; // characters, from & to ;

// What a unit is written as: at most eight units, and how many.
struct scMasked {
    std::array<char16_t, longestReference> text;
    std::uint8_t length;
};

// By unit, below 0x100; the others are written as numbers, &#x20ac;.
extern const std::array<scMasked, 0x100> maskedUnits;

// The unit that a name between & and ; stands for; 0 when it is unknown. What follows it in the text may be
// read, too, up to the end.
char16_t UtilpNamedUnit(std::u16string_view name, const char16_t* end);

} // namespace tvut
