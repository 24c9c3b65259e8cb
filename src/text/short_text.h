// Texts of up to 15 characters, which most are: their first 32 bytes are looked at in one step, and what is
// copied of them is written as two words that may overlap. A call and a loop cost more than that.
#pragma once

#include "text/blocks.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace tvut {

// Writes both ends of a run of one to two words; they overlap, and all is read before.
template <class Word>
void UtilpMoveEnds(void* to, const void* from, std::size_t bytes) {
    Word first;
    Word last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, static_cast<const char*>(from) + bytes - sizeof last, sizeof last);
    std::memcpy(to, &first, sizeof first);
    std::memcpy(static_cast<char*>(to) + bytes - sizeof last, &last, sizeof last);
}

// Of 2 to 32 bytes.
inline void UtilpMoveShort(void* to, const void* from, std::size_t bytes) {
    if (bytes >= 16)
        UtilpMoveEnds<__m128i>(to, from, bytes);
    else if (bytes >= 8)
        UtilpMoveEnds<std::uint64_t>(to, from, bytes);
    else if (bytes >= 4)
        UtilpMoveEnds<std::uint32_t>(to, from, bytes);
    else
        UtilpMoveEnds<std::uint16_t>(to, from, bytes);
}

template <class Word>
void UtilpFillEnds(void* to, const Word& word, std::size_t bytes) {
    std::memcpy(to, &word, sizeof word);
    std::memcpy(static_cast<char*>(to) + bytes - sizeof word, &word, sizeof word);
}

// Of up to 32 bytes.
inline void UtilpFillShort(void* to, std::uint8_t byte, std::size_t bytes) {
    const std::uint32_t word = 0x01010101u * byte;
    if (bytes >= 16)
        UtilpFillEnds(to, _mm_set1_epi32(static_cast<int>(word)), bytes);
    else if (bytes >= 8)
        UtilpFillEnds(to, std::uint64_t{word} << 32 | word, bytes);
    else if (bytes >= 4)
        UtilpFillEnds(to, word, bytes);
    else if (bytes >= 2)
        UtilpFillEnds(to, static_cast<std::uint16_t>(word), bytes);
    else if (bytes == 1)
        std::memcpy(to, &byte, 1);
}

// The beginning of a terminated text.
class clsShortText {
  public:
    static constexpr std::size_t bytes = 32;

    explicit clsShortText(const char16_t* text) : text_(text) {
        if (UtilpLieInOnePage(text, bytes))
            ends_ = Places(u'\0');
    }

    // Else it is longer, or its first 32 bytes may not be read all.
    explicit operator bool() const { return ends_ != 0; }

    // Characters before the terminator.
    std::size_t Length() const { return UtilpFirstUnit(ends_); }

    // The last place of a character, which may be the terminator; null when missing.
    const char16_t* FindLast(char16_t character) const {
        const unsigned end = ends_ & (0 - ends_);
        const unsigned places = Places(character) & (end | (end - 1));
        return places == 0 ? nullptr : text_ + (std::bit_width(places) - 1) / 2;
    }

  private:
    // Two bits a unit.
    unsigned Places(char16_t character) const {
        const __m128i wanted = _mm_set1_epi16(static_cast<short>(character));
        return UtilpEqualUnits(UtilpLoadEight(text_), wanted) |
               UtilpEqualUnits(UtilpLoadEight(text_ + blockUnits), wanted) << 16;
    }

    const char16_t* text_;
    unsigned ends_ = 0;
};

} // namespace tvut
