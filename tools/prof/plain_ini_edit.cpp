// The text is taken apart into lines, and a change replaces, inserts or erases pieces of it: what is not
// touched cannot change. A new line looks like the first item of its section, because a later one may be the
// indented continuation that some programs know.
#include "plain_ini_edit.h"

#include <algorithm>

namespace tool::prof {

namespace {

constexpr std::u16string_view blanks = u" \t";
constexpr std::u16string_view lineEnds = u"\r\n";

bool IsTrimmed(std::u16string_view text) {
    return text.empty() ||
           (blanks.find(text.front()) == blanks.npos && blanks.find(text.back()) == blanks.npos);
}

// A zero would be read as the picture of one.
bool IsOneLine(std::u16string_view text) {
    return text.find_first_of(std::u16string_view{u"\r\n\0", 3}) == text.npos;
}

std::size_t TrimmedEnd(std::u16string_view text) {
    return text.find_last_not_of(blanks) + 1; // nothing found: npos + 1 is 0
}

// Aligned columns are not imitated: one blank stands for several.
std::u16string_view FirstOf(std::u16string_view run) {
    return run.substr(0, 1);
}

} // namespace

bool IsIniItemName(std::u16string_view name) {
    return IsOneLine(name) && IsTrimmed(name) && name.find(u'=') == name.npos &&
           (name.empty() || std::u16string_view{u"[#;"}.find(name.front()) == name.npos);
}

bool IsIniSectionName(std::u16string_view name) {
    return IsOneLine(name);
}

bool IsIniValue(std::u16string_view value) {
    return IsOneLine(value) && IsTrimmed(value);
}

clsPlainIniText::clsPlainIniText(std::u16string text) : text_(std::move(text)) {
    TakeLines();
}

void clsPlainIniText::Set(Section section, std::u16string_view name, std::u16string_view value) {
    const std::vector<scSection> sections = Sections(section);
    if (sections.empty()) {
        AppendSection(*section, name, value);
        return TakeLines();
    }
    const auto first = lines_.begin() + static_cast<std::ptrdiff_t>(sections.front().first);
    const auto end = lines_.begin() + static_cast<std::ptrdiff_t>(sections.front().end);
    const auto line = std::find_if(first, end, [&](const scLine& candidate) {
        return candidate.kind == LineKind::item && ItemName(candidate) == name;
    });
    if (line == end)
        AppendItem(sections.front(), name, value);
    else
        SetValue(*line, value);
    TakeLines();
}

void clsPlainIniText::DeleteItems(const std::set<scItem>& items) {
    std::vector<scSection> erased;
    scItem item;
    for (std::size_t at = 0; at < lines_.size(); ++at) {
        if (lines_[at].kind == LineKind::header)
            item.section = HeaderName(lines_[at]);
        if (lines_[at].kind != LineKind::item)
            continue;
        item.name = ItemName(lines_[at]);
        if (items.contains(item))
            erased.push_back({at, at + 1});
    }
    Erase(erased);
}

void clsPlainIniText::DeleteSections(const std::set<std::u16string>& names) {
    std::vector<scSection> erased;
    for (std::size_t header = NextHeader(0); header < lines_.size();) {
        const std::size_t next = NextHeader(header + 1);
        if (names.contains(std::u16string{HeaderName(lines_[header])}))
            erased.push_back({header, CommentsAbove(next, header + 1)});
        header = next;
    }
    Erase(erased);
}

void clsPlainIniText::TakeLines() {
    lines_.clear();
    for (std::size_t begin = 0; begin < text_.size();) {
        const std::size_t end = std::min(text_.find_first_of(lineEnds, begin), text_.size());
        const std::size_t text = std::min(text_.find_first_not_of(blanks, begin), end);
        const bool isPair = text_.compare(end, 2, lineEnds) == 0;
        const std::size_t next = std::min(end + (isPair ? 2 : 1), text_.size());
        LineKind kind = LineKind::item;
        if (text == end)
            kind = LineKind::blank;
        else if (text_[text] == u'#' || text_[text] == u';')
            kind = LineKind::comment;
        else if (text_[text] == u'[')
            kind = LineKind::header;
        lines_.push_back({begin, text, end, next, kind});
        begin = next;
    }
}

std::u16string_view clsPlainIniText::Piece(std::size_t begin, std::size_t end) const {
    return std::u16string_view{text_}.substr(begin, end - begin);
}

std::u16string_view clsPlainIniText::HeaderName(const scLine& line) const {
    const std::u16string_view name = Piece(line.text + 1, line.end);
    return name.substr(0, name.rfind(u']'));
}

// The line's end when there is none.
std::size_t clsPlainIniText::Equals(const scLine& line) const {
    return line.text + std::min(Piece(line.text, line.end).find(u'='), line.end - line.text);
}

std::u16string_view clsPlainIniText::ItemName(const scLine& line) const {
    const std::u16string_view name = Piece(line.text, Equals(line));
    return name.substr(0, TrimmedEnd(name));
}

std::size_t clsPlainIniText::NextHeader(std::size_t line) const {
    while (line < lines_.size() && lines_[line].kind != LineKind::header)
        ++line;
    return line;
}

// Where the comments begin that stand directly above a header; at the end of the file there are none.
std::size_t clsPlainIniText::CommentsAbove(std::size_t line, std::size_t first) const {
    if (line < lines_.size())
        while (line > first && lines_[line - 1].kind == LineKind::comment)
            --line;
    return line;
}

std::vector<clsPlainIniText::scSection> clsPlainIniText::Sections(Section name) const {
    std::size_t header = NextHeader(0);
    if (!name)
        return {{0, header}};
    std::vector<scSection> found;
    while (header < lines_.size()) {
        const std::size_t end = NextHeader(header + 1);
        if (HeaderName(lines_[header]) == *name)
            found.push_back({header + 1, end});
        header = end;
    }
    return found;
}

void clsPlainIniText::SetValue(const scLine& line, std::u16string_view value) {
    const std::size_t equals = Equals(line);
    if (equals == line.end) { // a name alone is an item without a value
        if (!value.empty())
            text_.insert(line.text + ItemName(line).size(), u"=" + std::u16string{value});
        return;
    }
    const std::size_t begin = std::min(text_.find_first_not_of(blanks, equals + 1), line.end);
    text_.replace(begin, TrimmedEnd(Piece(begin, line.end)), value);
}

// The item stands above the blank lines at the section's end and above what belongs to the next section.
void clsPlainIniText::AppendItem(const scSection& section, std::u16string_view name,
                                 std::u16string_view value) {
    std::size_t before = CommentsAbove(section.end, section.first);
    while (before > section.first && lines_[before - 1].kind == LineKind::blank)
        --before;
    InsertLines(before, {ItemLine(section, name, value)});
}

void clsPlainIniText::AppendSection(std::u16string_view section, std::u16string_view name,
                                    std::u16string_view value) {
    std::vector<std::u16string> lines;
    if (!lines_.empty() && lines_.back().kind != LineKind::blank && BeginSectionsAfterBlankLine())
        lines.emplace_back();
    lines.push_back(u"[" + std::u16string{section} + u"]");
    lines.push_back(ItemLine({0, 0}, name, value));
    InsertLines(lines_.size(), lines);
}

// At the end of a file whose last line has no line end, the last one of the new lines has none.
void clsPlainIniText::InsertLines(std::size_t before, const std::vector<std::u16string>& lines) {
    const std::u16string lineEnd = LineEndNear(before);
    const bool isAfterOpenEnd = before > 0 && lines_[before - 1].end == lines_[before - 1].next;
    std::u16string inserted;
    for (const std::u16string& line : lines)
        inserted += isAfterOpenEnd ? lineEnd + line : line + lineEnd;
    text_.insert(before < lines_.size() ? lines_[before].begin : text_.size(), inserted);
}

std::u16string clsPlainIniText::ItemLine(const scSection& section, std::u16string_view name,
                                         std::u16string_view value) const {
    const auto isModel = [&](const scLine& line) {
        return line.kind == LineKind::item && Equals(line) < line.end;
    };
    const auto first = lines_.begin() + static_cast<std::ptrdiff_t>(section.first);
    const auto end = lines_.begin() + static_cast<std::ptrdiff_t>(section.end);
    auto model = std::find_if(first, end, isModel);
    if (model == end)
        model = std::find_if(lines_.begin(), lines_.end(), isModel);
    std::u16string line;
    std::u16string_view beforeEquals;
    std::u16string_view afterEquals;
    if (model != lines_.end()) {
        const std::size_t equals = Equals(*model);
        const std::size_t value0 = std::min(text_.find_first_not_of(blanks, equals + 1), model->end);
        line = Piece(model->begin, model->text);
        beforeEquals = FirstOf(Piece(model->text + ItemName(*model).size(), equals));
        afterEquals = FirstOf(Piece(equals + 1, value0));
    }
    return line.append(name).append(beforeEquals).append(u"=").append(afterEquals).append(value);
}

// That of the line above, or the nearest one; a file without any gets the system's.
std::u16string clsPlainIniText::LineEndNear(std::size_t line) const {
    const auto lineEnd = [&](const scLine& at) { return std::u16string{Piece(at.end, at.next)}; };
    for (std::size_t at = line; at > 0; --at)
        if (lines_[at - 1].end < lines_[at - 1].next)
            return lineEnd(lines_[at - 1]);
    return line < lines_.size() && lines_[line].end < lines_[line].next ? lineEnd(lines_[line])
                                                                        : std::u16string{lineEnds};
}

// As the last one does that is not the first line.
bool clsPlainIniText::BeginSectionsAfterBlankLine() const {
    for (std::size_t header = lines_.size(); header-- > 1;)
        if (lines_[header].kind == LineKind::header) {
            const std::size_t top = CommentsAbove(header, 0);
            return top == 0 || lines_[top - 1].kind == LineKind::blank;
        }
    return true;
}

void clsPlainIniText::Erase(const std::vector<scSection>& lines) {
    std::u16string left;
    std::size_t kept = 0;
    for (const scSection& piece : lines) {
        if (piece.first == piece.end)
            continue;
        left += Piece(kept, lines_[piece.first].begin);
        kept = lines_[piece.end - 1].next;
    }
    text_ = left.append(Piece(kept, text_.size()));
    TakeLines();
}

} // namespace tool::prof
