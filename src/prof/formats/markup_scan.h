// Finds the end of a line of markup, and where its parts may be, in one pass.
#pragma once

#include "text/scan.h"

#include <bit>

namespace tvut {

// What ProfpScanMarkupLine finds in a line of markup, sixteen characters at a time: fifteen readable units
// must follow its end.
struct scMarkupLine {
    const char16_t* end;
    const char16_t* quote; // the first double quote that is not among the first characters, or end
    const char16_t* less;  // the first "<" that is not the first character, or end
    bool marked;           // some character is "&" or NUL
};

// (Not a result: the processor would wait for it to be in memory before it could be copied as a whole.)
template <unsigned firstCharacters>
void ProfpScanMarkupLine(const char16_t* text, scMarkupLine& result) {
    scMarkupLine line{nullptr, nullptr, nullptr, false};
    unsigned quotable = 0xFFFFu << firstCharacters;
    unsigned lessable = 0xFFFEu;
    for (; !line.end; text += 16, quotable = lessable = 0xFFFF) {
        const __m128i block = UtilpPackAscii(UtilpLoadEight(text), UtilpLoadEight(text + 8));
        const auto equal = [block](char c) { return UtilpEqualBytes(block, c); };
        const auto mask = [](__m128i found) { return static_cast<unsigned>(_mm_movemask_epi8(found)); };
        const auto first = [text](unsigned found) { return text + std::countr_zero(found); };
        const unsigned ends = mask(_mm_or_si128(equal('\r'), equal('\n')));
        const unsigned inside = ends == 0 ? 0xFFFF : (ends & (0u - ends)) - 1;
        const unsigned quotes = mask(equal('"')) & quotable & inside;
        const unsigned less = mask(equal('<')) & lessable & inside;
        line.marked |= (mask(_mm_or_si128(equal('&'), equal('\0'))) & inside) != 0;
        if (quotes != 0 && !line.quote)
            line.quote = first(quotes);
        if (less != 0 && !line.less)
            line.less = first(less);
        if (ends != 0)
            line.end = first(ends);
    }
    result.end = line.end;
    result.quote = line.quote ? line.quote : line.end;
    result.less = line.less ? line.less : line.end;
    result.marked = line.marked;
}

} // namespace tvut
