// The named characters of HTML that masking and demasking know, and what each unit is masked as.
//
// A name has at most six ASCII characters, so with its semicolon it is a number of eight bytes. Looking it up
// is one load of the text, one hash and one comparison: the factor of the hash is chosen so that no two names
// meet.
#pragma once

#include "text/units.h"

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

// A name and its semicolon, one byte each, the first one lowest.
struct scNameKey {
    std::uint32_t low = 0;
    std::uint32_t high = 0;
};

// By slot; slots that are empty have no key and no unit.
struct scNamedUnits {
    static constexpr unsigned bits = 9;
    std::array<scNameKey, 1u << bits> keys;
    std::array<std::uint8_t, 1u << bits> units;

    static constexpr std::size_t SlotOf(const scNameKey& key) {
        return (key.low + key.high * 2) * 0xF26C8CDDu >> (32 - bits);
    }
};
extern const scNamedUnits namedUnits;

// 0 when there is none.
inline char16_t UtilpNamedUnit(const scNameKey& key) {
    const std::size_t slot = scNamedUnits::SlotOf(key);
    const scNameKey& known = namedUnits.keys[slot];
    return ((known.low ^ key.low) | (known.high ^ key.high)) == 0 ? namedUnits.units[slot] : u'\0';
}

// The unit that a name of less than eight characters stands for; 0 when it is unknown. Given are eight units
// from its first one on, as bytes: what no name has became 0, or 0x80 and more.
inline char16_t UtilpNamedUnit(__m128i bytes, std::size_t length) {
    constexpr std::uint64_t all = ~std::uint64_t{0};
    static constexpr std::uint64_t withSemicolon[] = {all >> 56, all >> 48, all >> 40, all >> 32,
                                                      all >> 24, all >> 16, all >> 8,  all};
    const __m128i kept =
        _mm_and_si128(bytes, _mm_loadl_epi64(reinterpret_cast<const __m128i*>(withSemicolon + length)));
    return UtilpNamedUnit(scNameKey{static_cast<std::uint32_t>(_mm_cvtsi128_si32(kept)),
                                    static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(kept, 4)))});
}

inline __m128i UtilpNameBytes(const char16_t* name) {
    const __m128i units = UtilpLoadEight(name);
    return _mm_packus_epi16(units, units);
}

// The unit that a name between & and ; stands for, of at most six units; 0 when it is unknown. What follows
// the semicolon in the text may be read, too, up to the end.
char16_t UtilpNamedUnit(std::u16string_view name, const char16_t* end);

} // namespace tvut
