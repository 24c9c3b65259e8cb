// The units of a page that mean something on its way to plain text: brackets of tags, white space, and the
// bracket characters. Eight or sixteen of them at a time.
#pragma once

#include "text/find.h"
#include "text/units.h"

#include <bit>
#include <cstddef>
#include <string_view>

namespace tvut {

constexpr char16_t noBreakSpace = 0xA0, openQuote = 0xAB, closeQuote = 0xBB;

struct scBrackets {
    char16_t open, close;
    std::u16string_view afterOpen, afterClose; // part of the bracket where it follows
};
inline constexpr scBrackets tagBrackets{u'<', u'>', u"", u""};
inline constexpr scBrackets markerBrackets{u'[', u']', u"_[", u"_]"};

inline bool UtilpBecomesSpace(char16_t unit) {
    return unit == u'\r' || unit == u'\n' || unit == u'\t';
}
// A blank, or the one that does not break.
inline bool UtilpIsStayingBlank(char16_t unit) {
    return (unit & ~(noBreakSpace ^ u' ')) == u' ';
}

inline bool UtilpIsWhite(char16_t unit) {
    return UtilpIsStayingBlank(unit) || UtilpBecomesSpace(unit);
}

// Two bits a unit of eight that is a blank.
inline unsigned UtilpBlanks(__m128i block) {
    return clsFewUnits{u' ', noBreakSpace}.Marks(block);
}
// Two bits a unit of eight that tags go from or white space is folded at.
inline unsigned UtilpFoldMarks(__m128i block, char16_t open, unsigned blanks, bool afterBlank = false) {
    const unsigned afterBlanks = blanks << 2 | (afterBlank ? 3u : 0u);
    return clsFewUnits{open, u'\r', u'\n', u'\t'}.Marks(block) | (blanks & afterBlanks);
}

// A bit for each of sixteen bytes that is a certain one.
inline unsigned UtilpPlaces(__m128i bytes, char16_t unit) {
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(unit)))));
}
// A bit for each that is white space.
inline unsigned UtilpBlankPlaces(__m128i bytes) {
    const auto equal = [=](char16_t unit) {
        return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(unit)));
    };
    const __m128i stay = _mm_or_si128(equal(u' '), equal(noBreakSpace));
    const __m128i become = _mm_or_si128(_mm_or_si128(equal(u'\r'), equal(u'\n')), equal(u'\t'));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(stay, become)));
}
inline std::size_t UtilpFirstPlace(unsigned places) {
    return static_cast<std::size_t>(std::countr_zero(places));
}

} // namespace tvut
