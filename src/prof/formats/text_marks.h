// The characters that the text form cannot hold, and what stands for them.
//
// A name's "=", "[" and "]" would split the line elsewhere or make it a header; a control character
// would end it. Controls become the Unicode control pictures.
#pragma once

#include "text/scan.h"

#include <algorithm>
#include <string_view>

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

template <bool isName>
struct scToMark {
    static constexpr char16_t Mark(char16_t c) { return isName ? ProfpMarkInName(c) : ProfpMarkInValue(c); }
    static constexpr bool Is(char16_t c) { return Mark(c) != c; }
    static __m128i Find(__m128i low, __m128i high) {
        const __m128i block = UtilpPackAscii(low, high);
        __m128i found = UtilpEqualBytes(_mm_subs_epu8(block, _mm_set1_epi8(0x1F)), 0);
        if constexpr (isName) {
            for (const char c : {'=', '[', ']'})
                found = _mm_or_si128(found, UtilpEqualBytes(block, c));
        }
        return found;
    }
};

// Copies a name or a value, marked. What has to be marked is rare, so all is copied first.
template <bool isName>
TVUT_ALWAYS_INLINE void ProfpCopyMarked(char16_t* to, std::u16string_view text) {
    if (UtilpCopyFinding<scToMark<isName>>(to, text))
        std::transform(text.begin(), text.end(), to, scToMark<isName>::Mark);
}

} // namespace tvut
