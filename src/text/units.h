// Comparing and copying short UTF-16 texts in line.
//
// Names and values have a dozen characters or two. At that length a call of memcmp or memcpy, which on
// this platform leads through an import into a routine made for long blocks, costs more than its work,
// and the standard library compares char16_t unit by unit.
//
// SSE2 belongs to the language here, as it does for every compiler of the target: the code is written with it
// and has no other form.
#pragma once

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

inline bool UtilpEqual(std::u16string_view a, std::u16string_view b) {
    const std::size_t length = a.size();
    if (length != b.size())
        return false;
    if (a.data() == b.data())
        return true;
    std::size_t at = 0;
    for (; at + 2 <= length; at += 2) {
        if (UtilpLoadPair(a.data() + at) != UtilpLoadPair(b.data() + at))
            return false;
    }
    return at == length || a[at] == b[at];
}

inline void UtilpCopy(char16_t* to, const char16_t* from, std::size_t length) {
    std::size_t at = 0;
    for (; at + 8 <= length; at += 8)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at), UtilpLoadEight(from + at));
    for (; at + 2 <= length; at += 2) {
        const std::uint32_t pair = UtilpLoadPair(from + at);
        std::memcpy(to + at, &pair, sizeof pair);
    }
    if (at != length)
        to[at] = from[at];
}

} // namespace tvut
