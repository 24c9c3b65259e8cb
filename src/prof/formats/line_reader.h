// Lines of a profile's text, without indentation and without blank lines.
#pragma once

#include "text/input_text.h"
#include "text/scan.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class clsLineReader {
  public:
    explicit clsLineReader(clsInputText& input) : input_(input) { Restart(); }
    clsLineReader(const clsLineReader&) = delete;
    clsLineReader& operator=(const clsLineReader&) = delete;

    // Moves to the next line that holds more than blanks. False at the end of the text. What was
    // seen of the line before is gone then.
    bool Next() {
        for (;;) {
            while (next_ < end_ && IsSkipped(*next_))
                ++next_;
            if (next_ >= end_) {
                if (!Refill(end_))
                    return false;
                continue;
            }
            begin_ = next_;
            scan_ = UtilpScanLine(begin_);
            if (scan_.end >= end_ && Refill(begin_))
                continue; // the line may go on in what has come
            if (scan_.zero)
                input_.ReplaceZeros(begin_, scan_.end);
            next_ = scan_.end;
            ++number_;
            return true;
        }
    }

    // Makes the line longer, over line ends and blanks as they stand, until a mark is in it at or behind a
    // place; the lines taken in are counted. Gives where the mark is, npos at the end of the text.
    std::size_t ExtendTo(std::u16string_view mark, std::size_t from) {
        std::size_t found = Line().find(mark, from);
        while (found == std::u16string_view::npos) {
            const std::size_t seen = Line().size(); // no mark holds a line end
            if (!TakeInNextLine())
                return found;
            found = Line().find(mark, seen);
        }
        return found;
    }

    // Makes the line that Next moved to the next one again.
    void Unread() {
        next_ = begin_;
        --number_;
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

    bool TakeInNextLine() {
        const char16_t* line = scan_.end;
        for (;;) {
            while (line < end_ && IsSkipped(*line))
                ++line;
            scLine scan{line, line, false, false};
            if (line < end_)
                scan = UtilpScanLine(line);
            if (scan.end >= end_) {
                const std::ptrdiff_t seen = line - begin_;
                if (Refill(begin_)) {
                    begin_ = next_;
                    line = begin_ + seen;
                    continue;
                }
                if (line >= end_)
                    return false;
            }
            if (scan.zero)
                input_.ReplaceZeros(line, scan.end);
            scan_.end = next_ = scan.end;
            ++number_;
            return true;
        }
    }

    void Restart() {
        next_ = input_.Text().data();
        end_ = next_ + input_.Text().size();
    }
    bool Refill(const char16_t* keepFrom) {
        if (!input_.Refill(keepFrom))
            return false;
        Restart();
        return true;
    }

    clsInputText& input_;
    const char16_t* next_;
    const char16_t* end_;
    const char16_t* begin_ = nullptr;
    scLine scan_{nullptr, nullptr, false, false};
    std::uint32_t number_ = 0;
};

} // namespace tvut
