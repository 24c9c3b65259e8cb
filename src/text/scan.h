// What scanners of UTF-16 text share: sixteen characters at a time as bytes, texts of 4 to 15 characters in
// one go, whether a text holds special characters, and where the first one stands. The scanners live with the
// forms and encodings they serve.
#pragma once

#include "text/units.h"

#include <bit>
#include <cstddef>
#include <string_view>

namespace tvut {

// Sixteen characters as bytes: those beyond ASCII become 0x7F or 0x80.
inline __m128i UtilpPackAscii(__m128i low, __m128i high) {
    return _mm_packs_epi16(low, high);
}
inline __m128i UtilpEqualBytes(__m128i bytes, char c) {
    return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c));
}

// The places in a text of 4 to 15 characters from which four characters each cover it. That they may overlap
// lets every such length take the same way: texts are short, and the processor cannot guess which length
// comes next. A wrong guess costs more than all the rest.
class clsQuarters {
  public:
    explicit clsQuarters(std::size_t length)
        : second_(length / 8 * 4), third_(length - 4 - second_), fourth_(length - 4) {}
    template <class Load> // a function of the place
    __m128i LowerHalf(Load load) const {
        return _mm_unpacklo_epi64(load(0), load(second_));
    }
    template <class Load>
    __m128i UpperHalf(Load load) const {
        return _mm_unpacklo_epi64(load(third_), load(fourth_));
    }

  private:
    std::size_t second_, third_, fourth_;
};

// How many characters stand before the first special one, or all of them. What is special says a type with
// Is(character) and Find(low, high), which returns a byte for each of sixteen characters: all its bits set
// where one is special.
template <class Special>
std::size_t UtilpLengthBefore(std::u16string_view text) {
    const std::size_t length = text.size();
    std::size_t at = 0;
    const char16_t* const begin = text.data();
    for (; length - at >= 16; at += 16) {
        const __m128i found = Special::Find(UtilpLoadEight(begin + at), UtilpLoadEight(begin + at + 8));
        if (const int mask = _mm_movemask_epi8(found))
            return at + static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(mask)));
    }
    if (length - at >= 4) {
        const auto load = [=](std::size_t place) { return UtilpLoadFour(begin + at + place); };
        const clsQuarters quarters(length - at);
        if (_mm_movemask_epi8(Special::Find(quarters.LowerHalf(load), quarters.UpperHalf(load))) == 0)
            return length;
    }
    while (at < length && !Special::Is(text[at]))
        ++at;
    return at;
}

// Copies a text to where it is not, and returns whether it holds a special character.
template <class Special>
TVUT_ALWAYS_INLINE bool UtilpCopyFinding(char16_t* to, std::u16string_view text) {
    __m128i found = _mm_setzero_si128();
    UtilpCopyLooking(to, text.data(), text.size(), [&](__m128i low, __m128i high) {
        found = _mm_or_si128(found, Special::Find(low, high));
    });
    bool isFound = _mm_movemask_epi8(found) != 0;
    if (text.size() < 4) {
        for (const char16_t c : text)
            isFound |= Special::Is(c);
    }
    return isFound;
}

} // namespace tvut
