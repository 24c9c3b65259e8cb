// Finding units in text whose length is known, eight at a time where the processor allows it.
//
// Nothing outside the text is read. Where nothing is found, the result is the end of the text, unless it is
// said to be null.
#pragma once

#include "text/units.h"

#include <array>
#include <bit>
#include <cstddef>
#include <initializer_list>

namespace tvut {

// Up to four units that are looked for together.
class clsFewUnits {
  public:
    static constexpr std::size_t most = 4;

    constexpr clsFewUnits(std::initializer_list<char16_t> units) {
        units_.fill(*units.begin());
        std::size_t at = 0;
        for (const char16_t unit : units)
            units_[at++] = unit;
    }
    constexpr bool Hold(char16_t unit) const {
        return unit == units_[0] || unit == units_[1] || unit == units_[2] || unit == units_[3];
    }
    // Two bits a unit of the block that is one of these.
    unsigned Marks(__m128i block) const {
        const auto equal = [&](std::size_t at) {
            return _mm_cmpeq_epi16(block, _mm_set1_epi16(static_cast<short>(units_[at])));
        };
        return static_cast<unsigned>(_mm_movemask_epi8(
            _mm_or_si128(_mm_or_si128(equal(0), equal(1)), _mm_or_si128(equal(2), equal(3)))));
    }

  private:
    std::array<char16_t, most> units_{};
};

// The first of some units.
inline const char16_t* UtilpFindAny(const char16_t* text, const char16_t* end, const clsFewUnits& units) {
    for (; end - text >= 8; text += 8) {
        const unsigned marks = units.Marks(UtilpLoadEight(text));
        if (marks != 0)
            return text + std::countr_zero(marks) / 2;
    }
    while (text != end && !units.Hold(*text))
        ++text;
    return text;
}

// Calls a function for the units that are some, from the last one on, until it says that it has found what it
// looks for; returns the place, or null. What is next does not wait for what was there.
template <class IsWanted>
const char16_t* UtilpFindLastOf(const char16_t* text, const char16_t* end, const clsFewUnits& units,
                                IsWanted isWanted) {
    for (; end - text >= 8; end -= 8) {
        for (unsigned marks = units.Marks(UtilpLoadEight(end - 8)); marks != 0;) {
            const int bit = 31 - std::countl_zero(marks); // the upper one of two a unit
            const char16_t* const place = end - 8 + bit / 2;
            if (isWanted(place))
                return place;
            marks ^= 3u << (bit - 1);
        }
    }
    while (end != text) {
        if (units.Hold(*--end) && isWanted(end))
            return end;
    }
    return nullptr;
}

// The last unit of a kind; null when there is none.
const char16_t* UtilpFindLast(const char16_t* text, const char16_t* end, char16_t unit);

// The first and the last place of a part that is not empty; null where there is none. Text and part may stand
// at odd addresses.
const char16_t* UtilpFindFirst(const char16_t* text, const char16_t* end, std::u16string_view part);
const char16_t* UtilpFindLast(const char16_t* text, const char16_t* end, std::u16string_view part);

} // namespace tvut
