// One walk, in place: the result never gets ahead of what is read. Line ends are only counted when they are
// met, since how many stay depends on how many there are; the next unit that stays puts them out. A row of
// bracket characters is decided as a whole by the depth before it. Blocks of eight units that need no
// decision are copied whole.
#include "text/html/finish.h"

#include "text/find.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr char16_t noBreakSpace = 0xA0, openQuote = 0xAB, closeQuote = 0xBB;

// Every three line ends become two, then every four two. Apart from the class, whose members would have to
// stay in memory for it.
char16_t* LimitedLineEnds(char16_t* out, std::size_t count) {
    const std::size_t fewer = count - count / 3;
    return std::fill_n(out, fewer - fewer / 4 * 2, u'\r');
}

class clsFinish {
  public:
    clsFinish(std::u16string_view text, char16_t* result)
        : next_(text.data()), end_(text.data() + text.size()), out_(result) {}

    char16_t* Run() {
        for (;;) {
            PutPlainBlocks();
            for (int units = 0; units < 8; ++units) {
                if (next_ == end_) {
                    PutLineEnds();
                    return out_;
                }
                Take(*next_++);
            }
        }
    }

  private:
    void Take(char16_t unit) {
        switch (unit) {
        case u' ':
        case noBreakSpace:
            if (!afterBlank_)
                Put(unit);
            afterBlank_ = true;
            break;
        case u'\r':
            ++lineEnds_;
            afterBlank_ = false;
            break;
        case u'\n':
            break;
        case openQuote:
        case closeQuote:
            PutQuotes(unit);
            break;
        default:
            Put(unit);
            afterBlank_ = false;
        }
    }

    // All in a row that are alike. Those that open are dropped up to the first that finds the depth above 0,
    // those that close from the one that brings it back there.
    void PutQuotes(char16_t quote) {
        std::ptrdiff_t count = 1;
        for (; next_ != end_ && *next_ == quote; ++next_)
            ++count;
        const bool opens = quote == openQuote;
        const std::ptrdiff_t put =
            std::clamp<std::ptrdiff_t>(opens ? count - (1 - depth_) : depth_ - 1, 0, count);
        depth_ += opens ? count : -count;
        if (put != 0)
            PutLineEnds();
        out_ = std::fill_n(out_, put, quote);
    }

    void Put(char16_t unit) {
        PutLineEnds();
        *out_++ = unit;
    }

    // Line ends wait until their number is known.
    void PutLineEnds() {
        if (lineEnds_ != 0)
            out_ = LimitedLineEnds(out_, lineEnds_);
        lineEnds_ = 0;
    }

    // Blocks of eight units of which none needs a decision.
    void PutPlainBlocks() {
        for (; end_ - next_ >= 8; next_ += 8, out_ += 8) {
            const __m128i block = UtilpLoadEight(next_);
            const unsigned blanks = clsFewUnits{u' ', noBreakSpace}.Marks(block);
            const unsigned others = clsFewUnits{u'\r', u'\n', openQuote, closeQuote}.Marks(block);
            const unsigned afterBlanks = blanks << 2 | (afterBlank_ ? 3u : 0u);
            if ((others | (blanks & afterBlanks)) != 0)
                return;
            PutLineEnds();
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out_), block);
            afterBlank_ = blanks >> 15 != 0;
        }
    }

    const char16_t* next_;
    const char16_t* end_;
    char16_t* out_;
    std::size_t lineEnds_ = 0;
    std::ptrdiff_t depth_ = 0;
    bool afterBlank_ = false;
};

} // namespace

std::size_t UtilpFinishPlainText(std::u16string_view text, char16_t* result) {
    return static_cast<std::size_t>(clsFinish(text, result).Run() - result);
}

} // namespace tvut
