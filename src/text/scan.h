// Scanning and copying UTF-16 text eight characters at a time, where the processor allows it.
//
// The scalar forms are the definition; the vector forms (SSE2, which every supported processor has)
// give the same answers.
#pragma once

#include "text/units.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace tvut {

// Control pictures and the stand-ins for "=", "[" and "]" all lie between these.
constexpr char16_t firstMark = u'\u2338';
constexpr char16_t lastMark = u'\u301B';

struct scLine {
    const char16_t* end;    // the first CR or LF
    const char16_t* equals; // the first "=" before it, or end
    bool marked;            // some character lies between firstMark and lastMark
    bool zero;              // some character is NUL
};

// Scans from a character to the end of its line. A CR or LF must follow somewhere, with seven more
// readable units behind it.
inline scLine UtilpScanLine(const char16_t* text) {
    scLine line{nullptr, nullptr, false, false};
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
#else
    for (; *text != u'\r' && *text != u'\n'; ++text) {
        if (*text == u'=' && !line.equals)
            line.equals = text;
        line.marked |= *text >= firstMark && *text <= lastMark;
        line.zero |= *text == u'\0';
    }
    line.end = text;
#endif
    if (!line.equals)
        line.equals = line.end;
    return line;
}

// Copies text while replacing the characters that the text form cannot hold: controls and, in names,
// "=", "[" and "]". Those are few, so whole blocks are copied first and looked at then.
template <bool isName>
class clsReplacingCopy {
  public:
    template <class Replace>
    static void Copy(char16_t* out, const char16_t* text, std::size_t length, Replace replace) {
#ifdef TVUT_HAS_SSE2
        if (length >= 8) {
            for (std::size_t at = 0; at + 8 <= length; at += 8)
                CopyBlock<8>(out + at, text + at, replace);
            if (length % 8 != 0) // the last block overlaps the one before
                CopyBlock<8>(out + length - 8, text + length - 8, replace);
            return;
        }
        if (length >= 4) {
            CopyBlock<4>(out, text, replace);
            CopyBlock<4>(out + length - 4, text + length - 4, replace);
            return;
        }
#endif
        for (std::size_t at = 0; at < length; ++at)
            out[at] = replace(text[at]);
    }

#ifdef TVUT_HAS_SSE2
  private:
    template <int units, class Replace>
    static void CopyBlock(char16_t* out, const char16_t* text, Replace replace) {
        const auto* const from = reinterpret_cast<const __m128i*>(text);
        auto* const to = reinterpret_cast<__m128i*>(out);
        const __m128i block = units == 8 ? _mm_loadu_si128(from) : _mm_loadl_epi64(from);
        if constexpr (units == 8)
            _mm_storeu_si128(to, block);
        else
            _mm_storel_epi64(to, block);
        const int mask = _mm_movemask_epi8(Special(block)) & (units == 8 ? 0xFFFF : 0xFF);
        if (mask != 0) {
            for (int i = 0; i < units; ++i)
                out[i] = replace(text[i]);
        }
    }

    static __m128i Special(__m128i block) {
        __m128i special = _mm_cmpeq_epi16(_mm_subs_epu16(block, _mm_set1_epi16(0x1F)), _mm_setzero_si128());
        if constexpr (isName) {
            special = _mm_or_si128(special, _mm_cmpeq_epi16(block, _mm_set1_epi16(u'=')));
            special = _mm_or_si128(special, _mm_cmpeq_epi16(block, _mm_set1_epi16(u'[')));
            special = _mm_or_si128(special, _mm_cmpeq_epi16(block, _mm_set1_epi16(u']')));
        }
        return special;
    }
#endif
};

} // namespace tvut
