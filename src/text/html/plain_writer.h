// The last step of a page's way to plain text: folds blanks, resolves the bracket characters « and », limits
// blank lines.
//
// Line ends are only counted when they are met, since how many stay depends on how many there are; the next
// unit that stays puts them out. A row of bracket characters is decided by the depth before it.
#pragma once

#include "text/html/tags.h"
#include "text/units.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tvut {

constexpr char16_t noBreakSpace = 0xA0, openQuote = 0xAB, closeQuote = 0xBB;

class clsPlainWriter {
  public:
    explicit clsPlainWriter(char16_t* result) : out_(result) {}

    // Where the next unit comes to stand, at most.
    char16_t* End() const { return out_ + lineEnds_; }
    char16_t* Finish() {
        PutLineEnds();
        return out_;
    }
    bool IsAfterBlank() const { return afterBlank_; }

    // How many units after those they put the next functions may write over.
    static constexpr std::ptrdiff_t margin = 8;

    // Eight units of which none needs a decision.
    void PutPlain(__m128i block, bool endsBlank) { PutPlainStart(block, 8, endsBlank); }

    // The first ones of eight units, of which none of these needs a decision.
    void PutPlainStart(__m128i block, std::size_t count, bool endsBlank) {
        PutLineEnds();
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out_), block);
        out_ += count;
        afterBlank_ = endsBlank;
    }

    // What stands for a tag. Branches, because a place that is computed from the tag would make all that is
    // read next wait until it is known whether it was written there.
    void PutTag(const scTag& tag) {
        if (tag.lineEnds != 0) {
            ++lineEnds_;
            afterBlank_ = false;
        } else if (tag.length != 0) {
            const bool isFolded = tag.length == 1 && afterBlank_; // a blank
            if (!isFolded) {
                PutLineEnds();
                std::memcpy(out_, tag.replacement.data(), sizeof tag.replacement);
                out_ += tag.length;
            }
            afterBlank_ = true;
        }
    }

    void Take(char16_t unit);

    // All in a row that are alike.
    void TakeQuotes(char16_t quote, std::ptrdiff_t count);

  private:
    void Put(char16_t unit) {
        PutLineEnds();
        *out_++ = unit;
    }

    void PutLineEnds() {
        if (lineEnds_ != 0)
            out_ = PutLimited(out_, lineEnds_);
        lineEnds_ = 0;
    }

    // Without the object, whose members would have to stay in memory for it.
    static char16_t* PutLimited(char16_t* out, std::size_t lineEnds);

    char16_t* out_;
    std::size_t lineEnds_ = 0;
    std::ptrdiff_t depth_ = 0;
    bool afterBlank_ = false;
};

} // namespace tvut
