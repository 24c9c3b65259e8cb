// Texts read in aligned blocks of 16 bytes.
//
// A block lies in one page with a unit of the text that has to be read, so that strings may end where
// readable memory does. The sanitizer would take that for an error: under it, units are read one by one.
#pragma once

#include "platform/sanitizer.h"
#include "text/units.h"

#include <cstddef>
#include <cstdint>

namespace tvut {

constexpr std::size_t blockBytes = sizeof(__m128i);
constexpr std::size_t blockUnits = blockBytes / sizeof(char16_t);

// Whether so many bytes from any address on lie in one page: then they may be read if the first of them may.
inline bool UtilpLieInOnePage(const void* from, std::size_t bytes) {
    constexpr std::size_t pageBytes = 4096; // or a multiple
    return !isAddressSanitized && reinterpret_cast<std::uintptr_t>(from) % pageBytes <= pageBytes - bytes;
}

// Walks the aligned blocks that a text lies in, from the one with its first unit on.
class clsBlocks {
  public:
    // Strings at odd addresses exist, in packed structures; their units do not lie in one block each.
    static bool Fit(const char16_t* text) {
        return !isAddressSanitized && reinterpret_cast<std::uintptr_t>(text) % 2 == 0;
    }

    explicit clsBlocks(const char16_t* text)
        : skipped_(reinterpret_cast<std::uintptr_t>(text) % blockBytes),
          block_(text - skipped_ / sizeof(char16_t)) {}

    __m128i Block() const { return _mm_load_si128(reinterpret_cast<const __m128i*>(block_)); }
    // Bits of the units that belong to the text.
    unsigned OfText(unsigned mask) const { return mask >> skipped_ << skipped_; }
    const char16_t* Unit(std::size_t number) const { return block_ + number; }
    void Next() {
        block_ += blockUnits;
        skipped_ = 0;
    }

  private:
    std::size_t skipped_; // bytes before the text
    const char16_t* block_;
};

// The first unit that a function of its block marks; there is one.
template <class Mark>
const char16_t* UtilpFirstMarked(const char16_t* text, Mark mark) {
    clsBlocks blocks(text);
    unsigned marked = blocks.OfText(mark(blocks.Block()));
    while (marked == 0) {
        blocks.Next();
        marked = mark(blocks.Block()); // all of it belongs to the text
    }
    return blocks.Unit(UtilpFirstUnit(marked));
}

} // namespace tvut
