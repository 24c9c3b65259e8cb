// Scanning and copying UTF-16 text eight characters at a time, where the processor allows it.
//
// The scalar forms are the definition; the vector forms (SSE2, which every supported processor has)
// give the same answers.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__) || (defined(_M_IX86_FP) && _M_IX86_FP >= 2) || defined(_M_X64)
#define TVUT_HAS_SSE2 1
#include <emmintrin.h>
#endif

namespace tvut {

// Control pictures and the stand-ins for "=", "[" and "]" all lie between these.
constexpr char16_t firstMark = u'\u2338';
constexpr char16_t lastMark = u'\u301B';

struct scLine {
    const char16_t* end;    // the first CR or LF
    const char16_t* equals; // the first "=" before it, or end
    bool marked;            // some character lies between firstMark and lastMark
};

// Scans from a character to the end of its line. A CR or LF must follow somewhere, with seven more
// readable units behind it.
inline scLine UtilpScanLine(const char16_t* text) {
    scLine line{nullptr, nullptr, false};
#ifdef TVUT_HAS_SSE2
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
        if (endMask != 0) {
            const unsigned before = (endMask & (0u - endMask)) - 1;
            equalsMask &= before;
            markMask &= before;
            line.end = text + std::countr_zero(endMask) / 2;
        }
        if (equalsMask != 0 && !line.equals)
            line.equals = text + std::countr_zero(equalsMask) / 2;
        line.marked |= markMask != 0;
        if (line.end)
            break;
    }
#else
    for (; *text != u'\r' && *text != u'\n'; ++text) {
        if (*text == u'=' && !line.equals)
            line.equals = text;
        line.marked |= *text >= firstMark && *text <= lastMark;
    }
    line.end = text;
#endif
    if (!line.equals)
        line.equals = line.end;
    return line;
}

// Copies text while passing the characters that the writer must replace through a function. A
// character needs that when it is a control, or, for names, one of "=", "[", "]".
template <bool isName, class Replace>
inline void UtilpCopyReplacing(char16_t* out, const char16_t* text, std::size_t length, Replace replace) {
    std::size_t at = 0;
#ifdef TVUT_HAS_SSE2
    const __m128i lastControl = _mm_set1_epi16(0x1F);
    const __m128i zero = _mm_setzero_si128();
    for (; at + 8 <= length; at += 8) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at));
        __m128i special = _mm_cmpeq_epi16(_mm_subs_epu16(block, lastControl), zero);
        if constexpr (isName) {
            special = _mm_or_si128(special, _mm_cmpeq_epi16(block, _mm_set1_epi16(u'=')));
            special = _mm_or_si128(special, _mm_cmpeq_epi16(block, _mm_set1_epi16(u'[')));
            special = _mm_or_si128(special, _mm_cmpeq_epi16(block, _mm_set1_epi16(u']')));
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + at), block);
        if (_mm_movemask_epi8(special) != 0) {
            for (std::size_t i = at; i < at + 8; ++i)
                out[i] = replace(text[i]);
        }
    }
#endif
    for (; at < length; ++at)
        out[at] = replace(text[at]);
}

} // namespace tvut
