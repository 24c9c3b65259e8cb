// Lines of a profile's text, without indentation and without blank lines.
#pragma once

#include "prof/formats/line_scan.h"
#include "prof/formats/markup_scan.h"
#include "text/encoding/input_text.h"

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
        return NextBy(text_,
                      [](const char16_t* begin, scLine& line) { ProfpScanLine(begin, nullptr, line); });
    }

    // The same; a line that begins with a name and "=" is not looked through for them. The name must hold no
    // "=" and no line end; none is empty.
    bool Next(std::u16string_view expectedName) {
        return NextBy(text_, [=, this](const char16_t* begin, scLine& line) {
            const std::size_t length = expectedName.size();
            isExpected_ = length != 0 && length < static_cast<std::size_t>(end_ - begin) &&
                          begin[length] == u'=' && UtilpEqual({begin, length}, expectedName);
            ProfpScanLine(begin, isExpected_ ? begin + length : nullptr, line);
        });
    }
    bool HasExpectedName() const { return isExpected_; }

    // The same for a form of markup. Markup is about the line, without what ExtendTo adds to it; quotes
    // among that number of first characters do not count there.
    template <unsigned firstCharacters = 0>
    bool NextElement() {
        return NextBy(markup_, ProfpScanMarkupLine<firstCharacters>);
    }
    const scMarkupLine& Markup() const { return markup_; }

    // Makes the line longer, over line ends and blanks as they stand, until a mark is in it at or after a
    // place; the lines taken in are counted. Returns where the mark is, npos at the end of the text.
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

    // All that follows, read into memory as a whole, zeros replaced. A line end and 31 more units follow
    // it. The next line is still the next.
    std::u16string_view Rest() {
        while (Refill(next_)) {
        }
        input_.ReplaceZeros(next_, end_);
        return View(next_, end_);
    }

    std::u16string_view Line() const { return View(begin_, lineEnd_); }
    char16_t First() const { return *begin_; }

    // In a line that begins with "[": what follows up to its last "]".
    std::u16string_view HeaderName() const {
        const std::u16string_view name = View(begin_ + 1, lineEnd_);
        return name.substr(0, name.rfind(u']'));
    }

    // The line up to its first "=", and what follows it.
    std::u16string_view Name() const { return View(begin_, text_.equals); }
    std::u16string_view Value() const {
        return text_.equals == lineEnd_ ? std::u16string_view() : View(text_.equals + 1, lineEnd_);
    }

    // Whether the line may hold characters that stand for others.
    bool Marked() const { return text_.marked; }

    // The number of the line, counted without blank ones, from 1; 0 before the first.
    std::uint32_t Number() const { return number_; }

  private:
    // Line ends and indentation alike: a line of blanks only is no line.
    static bool IsSkipped(char16_t c) { return c == u'\r' || c == u'\n' || c == u' ' || c == u'\t'; }
    static std::u16string_view View(const char16_t* begin, const char16_t* end) {
        return {begin, static_cast<std::size_t>(end - begin)};
    }

    static bool MayHoldZero(const scLine& line) { return line.zero; }
    static bool MayHoldZero(const scMarkupLine& line) { return line.marked; }

    template <class Line, class Scan>
    bool NextBy(Line& line, Scan scan) {
        for (;;) {
            while (next_ < end_ && IsSkipped(*next_))
                ++next_;
            if (next_ >= end_) {
                if (!Refill(end_))
                    return false;
                continue;
            }
            begin_ = next_;
            scan(begin_, line);
            if (line.end >= end_ && Refill(begin_))
                continue; // the line may go on in what has come
            if (MayHoldZero(line))
                input_.ReplaceZeros(begin_, line.end);
            lineEnd_ = next_ = line.end;
            ++number_;
            return true;
        }
    }

    bool TakeInNextLine() {
        const char16_t* line = lineEnd_;
        for (;;) {
            while (line < end_ && IsSkipped(*line))
                ++line;
            scLine scan{line, line, false, false};
            if (line < end_)
                ProfpScanLine(line, nullptr, scan);
            const char16_t* const end = scan.end;
            if (end >= end_) {
                const std::ptrdiff_t seen = line - begin_;
                if (Refill(begin_)) {
                    begin_ = next_;
                    line = begin_ + seen;
                    continue;
                }
                if (line >= end_)
                    return false;
            }
            input_.ReplaceZeros(line, end);
            lineEnd_ = next_ = end;
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
    const char16_t* lineEnd_ = nullptr;
    scLine text_{};
    scMarkupLine markup_{};
    bool isExpected_ = false;
    std::uint32_t number_ = 0;
};

} // namespace tvut
