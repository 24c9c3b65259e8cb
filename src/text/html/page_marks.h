// Where a page needs a decision, found for 32 units at a time, ahead of the walk over it.
//
// Which unit comes next after a tag depends on where the tag ends. Were each tag's end looked for from its
// beginning, and the next mark from there, one look would wait for the other all along the page; the marks
// of the next units are there by then.
#pragma once

#include "platform/inline.h"
#include "text/html/page_units.h"
#include "text/html/tags.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace tvut {

template <char16_t open, char16_t close>
class clsPageMarks {
  public:
    static constexpr std::size_t units = 32;

    // Begins before the text, with nothing left.
    explicit clsPageMarks(const char16_t* text) : text_(text - units) {}

    const char16_t* Text() const { return text_; }

    // Whether it can go on to the next units, and a tag's name or a reference be read where the last is.
    bool HasNext(const char16_t* end) const {
        return end - text_ >= static_cast<std::ptrdiff_t>(2 * units + tagWindow + 3);
    }
    TVUT_ALWAYS_INLINE void Advance() {
        const std::uint32_t carried = blanks_ >> 31;
        text_ += units;
        const scHalf low = ReadHalf(text_), high = ReadHalf(text_ + units / 2);
        blanks_ = low.blanks | high.blanks << 16;
        closes_ = low.closes | high.closes << 16;
        marks_ = low.decisions | high.decisions << 16 | (blanks_ & (blanks_ << 1 | carried));
        ends_ = marks_ | blanks_ | closes_;
    }

    // From a place on, a bit for each unit that needs a decision, and for each bracket that closes. A blank
    // needs one only after another.
    std::uint32_t Decisions(std::size_t place) const { return marks_ & ~std::uint32_t{0} << place; }
    std::uint32_t Closes(std::size_t place) const { return closes_ & ~std::uint32_t{0} << place; }
    // A bit for each unit that ends the name which begins at a place; some more of them do not.
    std::uint32_t NameEnds(std::size_t place) const { return place < units ? ends_ >> place : 0; }
    // Whether the unit before a place is a blank that stays.
    bool IsAfterBlank(std::size_t place) const { return (blanks_ >> (place - 1) & 1) != 0; }

  private:
    struct scHalf {
        std::uint32_t decisions, blanks, closes;
    };
    // Blanks and bracket characters differ in one bit each. From tabulator to carriage return is a range,
    // which costs less than what is looked for in it.
    static scHalf ReadHalf(const char16_t* text) {
        const __m128i bytes = UtilpNarrowSixteen(text);
        const auto all = [](int byte) { return _mm_set1_epi8(static_cast<char>(byte)); };
        const auto equal = [&](__m128i some, int byte) { return _mm_cmpeq_epi8(some, all(byte)); };
        const auto bits = [](__m128i some) { return static_cast<std::uint32_t>(_mm_movemask_epi8(some)); };
        const __m128i lines = _mm_cmpgt_epi8(all(0x85), _mm_add_epi8(bytes, all(0x77)));
        const __m128i quotes =
            equal(_mm_and_si128(bytes, all(~(openQuote ^ closeQuote))), openQuote & closeQuote);
        const __m128i blanks = equal(_mm_and_si128(bytes, all(~(noBreakSpace ^ u' '))), u' ');
        const __m128i begins = _mm_or_si128(equal(bytes, open), equal(bytes, '&'));
        return {bits(_mm_or_si128(_mm_or_si128(lines, quotes), begins)), bits(blanks),
                bits(equal(bytes, close))};
    }

    const char16_t* text_;
    std::uint32_t marks_ = 0, closes_ = 0, blanks_ = 0, ends_ = 0;
};

} // namespace tvut
