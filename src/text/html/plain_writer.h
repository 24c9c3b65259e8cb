// The last step of a page's way to plain text: folds blanks, resolves the bracket characters « and », limits
// blank lines.
//
// Line ends are only counted when they are met, since how many stay depends on how many there are; the next
// unit that stays puts them out. A row of bracket characters is decided by the depth before it.
#pragma once

#include "text/html/page_units.h"
#include "text/html/tags.h"
#include "text/units.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tvut {

class clsPlainWriter {
  public:
    explicit clsPlainWriter(char16_t* result) : out_(result) {}

    // Where the next unit comes to stand, at most.
    char16_t* End() const { return out_ + lineEnds_; }
    char16_t* Finish() { return PutLimited(out_, lineEnds_); }
    bool IsAfterBlank() const { return afterBlank_; }

    // Eight units of which none needs a decision.
    void PutPlain(__m128i block, bool endsBlank) {
        PutLineEnds();
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out_), block);
        out_ += 8;
        afterBlank_ = endsBlank;
    }

    // At most 32 units of which none needs a decision, and at least one; with a margin as many may be read
    // and written over.
    void PutRun(const char16_t* text, std::size_t count, bool endsBlank, bool hasMargin) {
        PutLineEnds();
        if (hasMargin) {
            const auto copy = [=, this](std::size_t at) {
                _mm_storeu_si128(reinterpret_cast<__m128i*>(out_ + at), UtilpLoadEight(text + at));
            };
            copy(0);
            copy(8);
            if (count > 16) {
                copy(16);
                copy(24);
            }
        } else {
            std::memmove(out_, text, count * sizeof(char16_t));
        }
        out_ += count;
        afterBlank_ = endsBlank;
    }

    // A unit that is neither a line end nor a bracket character.
    void TakePlain(char16_t unit, bool isBlank) {
        if (!isBlank || !afterBlank_)
            Put(unit);
        afterBlank_ = isBlank;
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

    // One bracket character. What TakeQuotes does with many, one after the other.
    void TakeQuote(char16_t quote) {
        const bool opens = quote == openQuote;
        if (depth_ > (opens ? 0 : 1))
            Put(quote);
        depth_ += opens ? 1 : -1;
    }

    void Take(char16_t unit);

    // All in a row that are alike.
    void TakeQuotes(char16_t quote, std::ptrdiff_t count);

  private:
    void Put(char16_t unit) {
        PutLineEnds();
        *out_++ = unit;
    }

    // Before a unit: where there are only a few, two are written, of which one may be written over.
    void PutLineEnds() {
        if (lineEnds_ == 0)
            return;
        if (lineEnds_ <= 3) {
            std::memcpy(out_, u"\r\r", 2 * sizeof(char16_t));
            out_ += lineEnds_ == 1 ? 1 : 2;
        } else {
            out_ = PutLimited(out_, lineEnds_);
        }
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
