// The characters that the text form cannot hold, and what stands for them.
//
// A name's "=", "[" and "]" would split the line elsewhere or make it a header; a control character
// would end it. Controls become the Unicode control pictures.
#pragma once

#include "text/units.h"

#include <cstddef>

namespace tvut {

constexpr char16_t controlPictures = 0x2400;

constexpr char16_t ProfpMarkInValue(char16_t c) {
    return c < 0x20 ? static_cast<char16_t>(c + controlPictures) : c;
}

constexpr char16_t ProfpMarkInName(char16_t c) {
    switch (c) {
    case u'=':
        return u'\u2338';
    case u'[':
        return u'\u301A';
    case u']':
        return u'\u301B';
    default:
        return ProfpMarkInValue(c);
    }
}

// Control pictures and the stand-ins for "=", "[" and "]" all lie between these.
constexpr char16_t firstMark = u'\u2338';
constexpr char16_t lastMark = u'\u301B';

// The picture of NUL stays as it is: no text of a profile can hold a NUL.
constexpr char16_t ProfpUnmarkInValue(char16_t c) {
    return c > 0x2400 && c < 0x2420 ? static_cast<char16_t>(c - controlPictures) : c;
}

constexpr char16_t ProfpUnmarkInName(char16_t c) {
    switch (c) {
    case u'\u2338':
        return u'=';
    case u'\u301A':
        return u'[';
    case u'\u301B':
        return u']';
    default:
        return ProfpUnmarkInValue(c);
    }
}

// Copies a name or a value, marked. What has to be marked is rare, so whole blocks are copied first and
// looked at then.
template <bool isName>
class clsMarkingCopy {
  public:
    static void Copy(char16_t* out, const char16_t* text, std::size_t length) {
        if (length >= 8) {
            for (std::size_t at = 0; at + 8 <= length; at += 8)
                CopyBlock<8>(out + at, text + at);
            if (length % 8 != 0) // the last block overlaps the one before
                CopyBlock<8>(out + length - 8, text + length - 8);
            return;
        }
        if (length >= 4) {
            CopyBlock<4>(out, text);
            CopyBlock<4>(out + length - 4, text + length - 4);
            return;
        }
        for (std::size_t at = 0; at < length; ++at)
            out[at] = Mark(text[at]);
    }

  private:
    static char16_t Mark(char16_t c) { return isName ? ProfpMarkInName(c) : ProfpMarkInValue(c); }

    template <int units>
    static void CopyBlock(char16_t* out, const char16_t* text) {
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
                out[i] = Mark(text[i]);
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
};

} // namespace tvut
