#include "text/html/plain_writer.h"

#include <algorithm>

namespace tvut {

void clsPlainWriter::Take(char16_t unit) {
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
        TakeQuotes(unit, 1);
        break;
    default:
        Put(unit);
        afterBlank_ = false;
    }
}

// Those that open are dropped up to the first that finds the depth above 0,
// those that close from the one that brings it back there.
void clsPlainWriter::TakeQuotes(char16_t quote, std::ptrdiff_t count) {
    const bool opens = quote == openQuote;
    const std::ptrdiff_t put =
        std::clamp<std::ptrdiff_t>(opens ? count - (1 - depth_) : depth_ - 1, 0, count);
    depth_ += opens ? count : -count;
    if (put != 0)
        PutLineEnds();
    out_ = std::fill_n(out_, put, quote);
}

// Every three line ends become two, then every four two.
char16_t* clsPlainWriter::PutLimited(char16_t* out, std::size_t lineEnds) {
    const std::size_t fewer = lineEnds - lineEnds / 3;
    return std::fill_n(out, fewer - fewer / 4 * 2, u'\r');
}

} // namespace tvut
