// The named characters of HTML that masking and demasking know, and what each unit is masked as.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tvut {

constexpr std::size_t longestReference = 8; // characters, from & to ;

// What a unit is written as: at most eight units, and how many.
struct scMasked {
    std::array<char16_t, longestReference> text;
    std::uint8_t length;
};

// By unit, below 0x100; the others are written as numbers, &#x20ac;.
extern const std::array<scMasked, 0x100> maskedUnits;

// A name of up to six ASCII characters as a number, its first character lowest.
struct scEntityKey {
    std::uint32_t low = 0;
    std::uint32_t high = 0;
    std::uint32_t length = 0;

    constexpr bool operator==(const scEntityKey&) const = default;
};

// The unit that a name stands for; 0 when it is unknown.
char16_t UtilpNamedUnit(const scEntityKey& name);

} // namespace tvut
