// What is asked for between texts waits in pending_. BeginText writes it when a text follows: line ends, then
// the line's indentation or the cells that the text is away from the one before, then the marker of an item.
// What no text follows is never written.
#include "page_writer.h"

#include "characters.h"
#include "marks.h"

#include <array>

namespace tool::html {

namespace {

constexpr std::u16string_view lineEnd = u"<br>";
constexpr std::size_t mostIndent = 60; // columns; whatever nests deeper stands there, too
constexpr std::size_t tabulator = 8;
constexpr char16_t noBreakSpace = 0xA0;
constexpr char16_t replacement = 0xFFFD;

constexpr bool IsControl(char16_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

// Of a script that is written without blanks between words: Chinese and Japanese.
constexpr bool IsUnspaced(char16_t c) {
    return (c >= 0x2E80 && c <= 0xA4CF) || (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFF01 && c <= 0xFF60);
}

std::u16string_view MaskOf(char16_t c) {
    switch (c) {
    case u'&':
        return u"&amp;";
    case u'<':
        return u"&lt;";
    case u'>':
        return u"&gt;";
    case u'"':
        return u"&quot;";
    default:
        return {};
    }
}

char16_t MarkOf(char16_t c) {
    switch (c) {
    case noBreakSpace:
        return keptBlank;
    case u'«':
        return leftGuillemet;
    case u'»':
        return rightGuillemet;
    default:
        return IsControl(c) || IsMark(c) ? replacement : c;
    }
}

} // namespace

void AppendMasked(std::u16string& page, std::u16string_view text) {
    for (const char16_t c : text) {
        if (const std::u16string_view mask = MaskOf(c); !mask.empty())
            page += mask;
        else
            page += MarkOf(c);
    }
}

// A line end between two characters of an unspaced script is no blank.
void clsPageWriter::Text(std::u16string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && !IsBlank(text[end]))
            ++end;
        if (end > at) {
            if (pending_.lineFeed && IsUnspaced(last_) && IsUnspaced(text[at]))
                pending_.blank = false;
            BeginText(false);
            AppendMasked(page_, text.substr(at, end - at));
            last_ = text[end - 1];
        }
        for (at = end; at < text.size() && IsBlank(text[at]); ++at) {
            pending_.blank = true;
            pending_.lineFeed = pending_.lineFeed || text[at] == u'\n';
        }
    }
}

void clsPageWriter::Preformatted(std::u16string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t c = text[at];
        if (c == u'\n' || (c == u'\r' && !text.substr(at + 1).starts_with(u'\n'))) {
            ++pending_.keptLineEnds;
            column_ = pending_.keptBlanks = 0;
        } else if (IsBlank(c)) {
            const std::size_t blanks = c == u'\t' ? tabulator - column_ % tabulator : c == u' ';
            pending_.keptBlanks += blanks;
            column_ += blanks;
        } else {
            BeginPreformatted();
            AppendMasked(page_, text.substr(at, 1));
            ++column_;
        }
    }
}

void clsPageWriter::EndLines(unsigned count) {
    if (pending_.freshCell)
        return;
    pending_.lineEnds = std::max(pending_.lineEnds, count);
    pending_.blank = false;
    pending_.keptLineEnds = 0;
    column_ = pending_.keptBlanks = 0;
}

void clsPageWriter::BreakLine() {
    EndLines(std::min(pending_.lineEnds + 1, 2u));
}

void clsPageWriter::BeginText(bool preformatted) {
    if (!page_.empty())
        WriteLineEnds(pending_.lineEnds);
    if (pending_.line)
        BeginLine(preformatted);
    else if (pending_.cells > 0)
        page_.append(pending_.cells, nextCell);
    else if (pending_.blank)
        page_ += u' ';
    if (std::exchange(pending_.marker, false))
        WriteMarker();
    pending_.lineEnds = 0;
    pending_.cells = 0;
    pending_.blank = pending_.lineFeed = pending_.freshCell = false;
    labelStart_ = std::min(labelStart_, page_.size());
}

void clsPageWriter::BeginPreformatted() {
    const unsigned lineEnds = std::exchange(pending_.keptLineEnds, 0);
    const std::size_t blanks = std::exchange(pending_.keptBlanks, 0);
    BeginText(true);
    for (unsigned count = 0; count < lineEnds; ++count) {
        WriteLineEnds(1);
        BeginLine(true);
    }
    labelStart_ = std::min(labelStart_, page_.size());
    page_.append(blanks, keptBlank);
}

void clsPageWriter::WriteLineEnds(unsigned count) {
    if (count == 0)
        return;
    for (; count > 0; --count)
        page_ += lineEnd;
    ++lines_;
    pending_.line = true;
    labelStart_ = noLabel;
}

void clsPageWriter::BeginLine(bool preformatted) {
    if (preformatted)
        page_ += wholeLine;
    page_.append(std::min(pending_.marker ? markerIndent_ : indent_, mostIndent), keptBlank);
    page_.append(pending_.cells, nextCell);
    pending_.line = false;
}

void clsPageWriter::WriteMarker() {
    page_.append(marker_.empty() ? u"-" : marker_) += keptBlank;
    page_ += hangingIndent;
}

void clsPageWriter::BeginItem(std::u16string marker) {
    EndItem();
    marker_ = std::move(marker);
    markerIndent_ = indent_;
    pending_.marker = true;
}

void clsPageWriter::EndItem() {
    if (pending_.marker) {
        BeginText(false);
        EndLine();
    }
}

void clsPageWriter::EndRow() {
    pending_.blank = pending_.blank || pending_.cells > 0;
    pending_.cells = 0;
}

void clsPageWriter::BeginCell() {
    pending_.freshCell = true;
}

void clsPageWriter::EndCell() {
    pending_.freshCell = false;
}

std::u16string_view clsPageWriter::Label() const {
    return labelStart_ == noLabel ? std::u16string_view{} : std::u16string_view(page_).substr(labelStart_);
}

void clsPageWriter::EndLink(std::u16string_view address) {
    std::u16string start = u"<a href=\"";
    start.append(address).append(u"\">");
    page_.insert(labelStart_, start).append(u"</a>");
}

void clsPageWriter::Return(const scPlace& place) {
    page_.resize(place.length);
    pending_ = place.pending;
    lines_ = place.lines;
    labelStart_ = noLabel;
}

} // namespace tool::html
