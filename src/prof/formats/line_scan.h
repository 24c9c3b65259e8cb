// Finds the end of a line of the text form, and what its reader has to know of the line, in one pass.
#pragma once

#include "prof/formats/text_marks.h"
#include "text/units.h"

#include <bit>

namespace tvut {

struct scLine {
    const char16_t* end;    // the first CR or LF
    const char16_t* equals; // the first "=" before it, or end
    bool marked;            // some character lies between firstMark and lastMark
    bool zero;              // some character is NUL
};

// Scans from a character to the end of its line. A CR or LF must follow somewhere, with seven more
// readable units after it.
inline scLine ProfpScanLine(const char16_t* text) {
    scLine line{nullptr, nullptr, false, false};
    const __m128i carriageReturn = _mm_set1_epi16(u'\r');
    const __m128i lineFeed = _mm_set1_epi16(u'\n');
    const __m128i equals = _mm_set1_epi16(u'=');
    const __m128i belowMarks = _mm_set1_epi16(static_cast<short>(firstMark));
    const __m128i markRange = _mm_set1_epi16(static_cast<short>(lastMark - firstMark));
    const __m128i zero = _mm_setzero_si128();
    for (;; text += 8) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
        const __m128i ends =
            _mm_or_si128(_mm_cmpeq_epi16(block, carriageReturn), _mm_cmpeq_epi16(block, lineFeed));
        const __m128i marks =
            _mm_cmpeq_epi16(_mm_subs_epu16(_mm_sub_epi16(block, belowMarks), markRange), zero);
        auto endMask = static_cast<unsigned>(_mm_movemask_epi8(ends));
        auto equalsMask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, equals)));
        auto markMask = static_cast<unsigned>(_mm_movemask_epi8(marks));
        auto zeroMask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, zero)));
        if (endMask != 0) {
            const unsigned before = (endMask & (0u - endMask)) - 1;
            equalsMask &= before;
            markMask &= before;
            zeroMask &= before;
            line.end = text + std::countr_zero(endMask) / 2;
        }
        if (equalsMask != 0 && !line.equals)
            line.equals = text + std::countr_zero(equalsMask) / 2;
        line.marked |= markMask != 0;
        line.zero |= zeroMask != 0;
        if (line.end)
            break;
    }
    if (!line.equals)
        line.equals = line.end;
    return line;
}

} // namespace tvut
