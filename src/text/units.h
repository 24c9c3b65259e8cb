// Comparing and copying short UTF-16 texts in line.
//
// Names and values have a dozen characters or two. At that length a call of memcmp or memcpy, which on
// this platform leads through an import into a routine made for long blocks, costs more than its work,
// and the standard library compares char16_t unit by unit.
//
// SSE2 belongs to the language here, as it does for every compiler of the target: the code is written with it
// and has no other form.
#pragma once

#include "platform/inline.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>
#include <string_view>

namespace tvut {

// One unit, at any address: callers' texts stand in packed structures, too.
inline char16_t UtilpLoadUnit(const char16_t* text) {
    char16_t unit;
    std::memcpy(&unit, text, sizeof unit);
    return unit;
}
inline void UtilpStoreUnit(char16_t* text, char16_t unit) {
    std::memcpy(text, &unit, sizeof unit);
}

// Two units that stand side by side.
inline std::uint32_t UtilpLoadPair(const char16_t* text) {
    std::uint32_t pair;
    std::memcpy(&pair, text, sizeof pair);
    return pair;
}

// Eight units that stand side by side.
inline __m128i UtilpLoadEight(const char16_t* text) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
}

// Sixteen units as bytes. Other units than those of Latin-1 become 0 or 255.
inline __m128i UtilpNarrowSixteen(const char16_t* text) {
    return _mm_packus_epi16(UtilpLoadEight(text), UtilpLoadEight(text + 8));
}

// Four units, in the lower half.
inline __m128i UtilpLoadFour(const char16_t* text) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(text));
}

// Two bits a unit that equals one of another block.
inline unsigned UtilpEqualUnits(__m128i a, __m128i b) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(a, b)));
}

inline std::size_t UtilpFirstUnit(unsigned mask) {
    return static_cast<std::size_t>(std::countr_zero(mask)) / 2;
}

// Asks for memory that will soon be read.
inline void UtilpPrefetch(const void* address) {
    _mm_prefetch(static_cast<const char*>(address), _MM_HINT_T0);
}

// Pieces of a text may overlap below: so most lengths take the same way. Texts are short, and the processor
// cannot guess which length comes next; a wrong guess costs more than all the rest.

inline bool UtilpEqual(std::u16string_view a, std::u16string_view b) {
    const std::size_t length = a.size();
    if (length != b.size())
        return false;
    if (a.data() == b.data())
        return true;
    if (length >= 8) {
        const auto equal = [&](std::size_t at) {
            return UtilpEqualUnits(UtilpLoadEight(a.data() + at), UtilpLoadEight(b.data() + at)) == 0xFFFF;
        };
        for (std::size_t at = 0; at + 8 < length; at += 8) {
            if (!equal(at))
                return false;
        }
        return equal(length - 8);
    }
    if (length >= 4) {
        const auto twoFours = [=](const char16_t* text) {
            return _mm_unpacklo_epi64(UtilpLoadFour(text), UtilpLoadFour(text + length - 4));
        };
        return UtilpEqualUnits(twoFours(a.data()), twoFours(b.data())) == 0xFFFF;
    }
    for (std::size_t at = 0; at < length; ++at) {
        if (a[at] != b[at])
            return false;
    }
    return true;
}

// Copies to where the text is not, and calls look(low, high) with sixteen units at a time, each of which is
// seen once at least; a text of less than four units is left to be looked at.
template <class Look>
TVUT_ALWAYS_INLINE void UtilpCopyLooking(char16_t* to, const char16_t* from, std::size_t length, Look look) {
    const auto eight = [=](std::size_t at) {
        const __m128i block = UtilpLoadEight(from + at);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at), block);
        return block;
    };
    const auto four = [=](std::size_t at) {
        const __m128i block = UtilpLoadFour(from + at);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(to + at), block);
        return block;
    };
    if (length >= 16) {
        for (std::size_t at = 0; at + 16 < length; at += 16)
            look(eight(at), eight(at + 8));
        look(eight(length - 16), eight(length - 8));
    } else if (length >= 8) {
        look(eight(0), eight(length - 8));
    } else if (length >= 4) {
        const __m128i both = _mm_unpacklo_epi64(four(0), four(length - 4));
        look(both, both);
    } else {
        for (std::size_t at = 0; at < length; ++at)
            to[at] = from[at];
    }
}

inline void UtilpCopy(char16_t* to, const char16_t* from, std::size_t length) {
    UtilpCopyLooking(to, from, length, [](__m128i, __m128i) {});
}

} // namespace tvut
