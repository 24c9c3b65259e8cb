// Finds the end of a line of the text form, and what its reader has to know of the line, in one pass.
#pragma once

#include "prof/formats/text_marks.h"
#include "text/scan.h"

#include <bit>
#include <cstdint>

namespace tvut {

struct scLine {
    const char16_t* end;    // the first CR or LF
    const char16_t* equals; // the first "=" before it, or end
    bool marked;            // some character lies between firstMark and lastMark
    bool zero;              // some character is NUL
};

// Thirty-two characters as bytes, and a bit for each that equals a byte.
class clsLineBlock {
  public:
    static constexpr std::size_t units = 32;

    explicit clsLineBlock(const char16_t* text)
        : low_(UtilpPackAscii(UtilpLoadEight(text), UtilpLoadEight(text + 8))),
          high_(UtilpPackAscii(UtilpLoadEight(text + 16), UtilpLoadEight(text + 24))) {}

    std::uint32_t Equal(char c) const { return Mask(UtilpEqualBytes(low_, c), UtilpEqualBytes(high_, c)); }
    std::uint32_t EqualEither(char a, char b) const {
        return Mask(_mm_or_si128(UtilpEqualBytes(low_, a), UtilpEqualBytes(low_, b)),
                    _mm_or_si128(UtilpEqualBytes(high_, a), UtilpEqualBytes(high_, b)));
    }

  private:
    static std::uint32_t Mask(__m128i low, __m128i high) {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(low)) |
               static_cast<std::uint32_t>(_mm_movemask_epi8(high)) << 16;
    }

    __m128i low_, high_;
};

// Looks for rare characters in a line that holds NULs or characters that a block packs into 0x7F.
inline void ProfpFindRareCharacters(const char16_t* text, scLine& line) {
    for (; text != line.end; ++text) {
        line.marked |= *text >= firstMark && *text <= lastMark;
        line.zero |= *text == u'\0';
    }
}

// Scans from a character to the end of its line; where its first "=" is may be known. A CR or LF must follow
// somewhere, with 31 more readable units after it. A block is as long as most lines are, or what follows
// their "=": the processor cannot guess how many shorter ones a line takes.
//
// (The line is no result: the processor would wait for it to be in memory before it could be copied as a
// whole.)
inline void ProfpScanLine(const char16_t* const text, const char16_t* equals, scLine& line) {
    const char16_t* end = nullptr;
    std::uint32_t rare = 0;
    for (const char16_t* next = equals ? equals + 1 : text; !end; next += clsLineBlock::units) {
        const clsLineBlock block(next);
        const std::uint32_t ends = block.EqualEither('\r', '\n');
        const std::uint32_t before = (ends & (0u - ends)) - 1; // all, where there is none
        if (!equals) {
            if (const std::uint32_t found = block.Equal('=') & before)
                equals = next + std::countr_zero(found);
        }
        rare |= block.EqualEither('\0', '\x7F') & before;
        if (ends != 0)
            end = next + std::countr_zero(ends);
    }
    line.end = end;
    line.equals = equals ? equals : end;
    line.marked = line.zero = false;
    if (rare != 0)
        ProfpFindRareCharacters(text, line);
}

} // namespace tvut
