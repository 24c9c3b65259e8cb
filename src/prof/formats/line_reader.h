// Lines of a profile's text, without indentation and without blank lines.
//
// The text is a clsInputText's: a line end and seven more units stand behind its last character, so
// the scans need no other bound.
#pragma once

#include "text/scan.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class clsLineReader {
  public:
    explicit clsLineReader(std::u16string_view paddedText)
        : next_(paddedText.data()), end_(paddedText.data() + paddedText.size()) {}

    // Moves to the next line that holds more than blanks. False at the end of the text.
    bool Next() {
        for (;;) {
            while (next_ < end_ && IsSkipped(*next_))
                ++next_;
            if (next_ >= end_)
                return false;
            begin_ = next_;
            scan_ = UtilpScanLine(begin_);
            next_ = scan_.end;
            ++number_;
            return true;
        }
    }

    std::u16string_view Line() const { return View(begin_, scan_.end); }
    char16_t First() const { return *begin_; }

    // In a line that begins with "[": what follows up to its last "]".
    std::u16string_view HeaderName() const {
        const std::u16string_view name = View(begin_ + 1, scan_.end);
        return name.substr(0, name.rfind(u']'));
    }

    // The line up to its first "=", and what stands behind that.
    std::u16string_view Name() const { return View(begin_, scan_.equals); }
    std::u16string_view Value() const {
        return scan_.equals == scan_.end ? std::u16string_view() : View(scan_.equals + 1, scan_.end);
    }

    // Whether the line may hold characters that stand for others.
    bool Marked() const { return scan_.marked; }

    // The number of the line, counted without blank ones, from 1; 0 before the first.
    std::uint32_t Number() const { return number_; }

  private:
    // Line ends and indentation alike: a line of blanks only is no line.
    static bool IsSkipped(char16_t c) { return c == u'\r' || c == u'\n' || c == u' ' || c == u'\t'; }
    static std::u16string_view View(const char16_t* begin, const char16_t* end) {
        return {begin, static_cast<std::size_t>(end - begin)};
    }

    const char16_t* next_;
    const char16_t* end_;
    const char16_t* begin_ = nullptr;
    scLine scan_{nullptr, nullptr, false};
    std::uint32_t number_ = 0;
};

} // namespace tvut
