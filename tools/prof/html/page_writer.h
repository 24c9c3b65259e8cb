// Writes a page that says nothing but what the library's conversion reads well: masked text, <br> at the end
// of each line, <li> before an item and <a href="...">label</a>, with the marks of marks.h.
//
// Line ends and blanks are asked for, not written: they are put before what follows them, so that there are
// none too many, none at the end of a line, and never more than one empty line but within preformatted text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tool::html {

// A text without what HTML or the conversion would take for something else.
void AppendMasked(std::u16string& page, std::u16string_view text);

class clsPageWriter {
  public:
    explicit clsPageWriter(std::size_t expected) { page_.reserve(expected); }

    void Text(std::u16string_view text);         // white space folds
    void Preformatted(std::u16string_view text); // white space counts; LF ends lines

    void EndLine() { EndLines(1); }
    void EndParagraph() { EndLines(2); }
    void BreakLine(); // each <br> counts
    void Indent(std::size_t columns) { indent_ = columns; }

    // What comes next is an item. The marker is empty for a plain one, which takes two columns.
    void BeginItem(std::u16string marker);
    void EndItem(); // an item without text has its marker, too

    // Line ends asked for before a cell's first text do not count.
    void EndRow(); // empty cells at its end do not count
    void BeginCell();
    void EndCell();
    void SeparateCell() { ++pending_.cells; } // from the one before it in the row
    // After a cell of one line: the next cell goes on in it, whatever ends its contents asked for.
    void DropLineEnds() { pending_.lineEnds = 0; }
    // How many lines there are before what was written last, and before what is written next.
    std::int32_t LinesBefore() const { return lines_; }
    std::int32_t LinesBeforeNext() const { return lines_ + (pending_.lineEnds > 0 && !page_.empty()); }

    void BeginLink() { labelStart_ = noLabel; }
    // What of the label stands in the last line, as it was written.
    std::u16string_view Label() const;
    void EndLink(std::u16string_view address); // masked
    void AppendToLabel(std::u16string_view text) { page_ += text; }

    struct scPending {
        unsigned lineEnds = 0;      // of lines and paragraphs
        unsigned keptLineEnds = 0;  // of preformatted lines
        std::size_t keptBlanks = 0; // of a preformatted line
        std::size_t cells = 0;      // that the next text is away from the one before
        bool blank = false;
        bool lineFeed = false; // is the blank, or a part of it
        bool marker = false;
        bool line = true;       // nothing stands in the line
        bool freshCell = false; // nothing stands in the cell
    };
    // A place to return to, which takes back what was written since. A link that began before it must not end
    // between.
    struct scPlace {
        std::size_t length = 0;
        scPending pending;
        std::int32_t lines = 0;
    };
    scPlace Place() const { return {page_.size(), pending_, lines_}; }
    void Return(const scPlace& place);

    std::u16string Take() { return std::move(page_); }

  private:
    static constexpr std::size_t noLabel = static_cast<std::size_t>(-1);

    void EndLines(unsigned count);
    void BeginText(bool preformatted);
    void BeginLine(bool preformatted);
    void BeginPreformatted();
    void WriteLineEnds(unsigned count);
    void WriteMarker();

    std::u16string page_;
    scPending pending_;
    std::size_t indent_ = 0;
    std::u16string marker_;
    std::size_t markerIndent_ = 0;
    std::size_t column_ = 0; // in a preformatted line, with blanks that are pending
    std::size_t labelStart_ = noLabel;
    std::int32_t lines_ = 0;
    char16_t last_ = 0; // unit of a text
};

} // namespace tool::html
