// Lines come one after another. Those that hold cells wait until a line without any: only then the widths of
// their columns are known. All others are broken at once, word by word; a character that takes two columns is
// a word of its own, but for marks that no line begins or ends with.
#include "line_layout.h"

#include "column_width.h"
#include "marks.h"

#include <algorithm>
#include <vector>

namespace tool::html {

namespace {

constexpr std::size_t cellGap = 2;
constexpr std::size_t widestTable = 160; // columns, where no width is asked for

// No line begins with one of these, and none ends with one of those.
constexpr std::u16string_view closing =
    u"、。，．：；？！）］｝〉》」』】〕ー々ぁぃぅぇぉっゃゅょァィゥェォッャュョ％";
constexpr std::u16string_view opening = u"（［｛〈《「『【〔";

constexpr bool HasNoColumn(char16_t mark) {
    return mark == wholeLine || mark == hangingIndent;
}

scCharacter CharacterAt(std::u16string_view text, std::size_t at) {
    return HasNoColumn(text[at]) ? scCharacter{1, 0} : tool::CharacterAt(text, at);
}

std::size_t ColumnsOf(std::u16string_view text) {
    return tool::ColumnsOf(text) - static_cast<std::size_t>(std::ranges::count_if(text, HasNoColumn));
}

// Takes the part before a separator from a text, and the separator.
std::u16string_view TakePart(std::u16string_view& text, char16_t separator) {
    const std::u16string_view part = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    return part;
}

struct scWord {
    std::u16string_view text;
    std::size_t columns;
    std::size_t gap; // blanks before it
    bool hangs;      // the lines that follow begin in its column, and it stands beside what is before it
};

// Whether a line may end between these characters, of which one is wide.
bool IsBreak(char16_t before, char16_t after) {
    return opening.find(before) == opening.npos && closing.find(after) == closing.npos;
}

std::size_t WordLength(std::u16string_view line, std::size_t& columns) {
    unsigned before = 0; // columns of the last character that has any
    std::size_t at = 0;
    while (at < line.size() && line[at] != u' ' && line[at] != nextCell && line[at] != hangingIndent) {
        const scCharacter character = CharacterAt(line, at);
        const bool isBesideWide = before > 0 && character.columns > 0 && before + character.columns > 2;
        if (isBesideWide && IsBreak(line[at - 1], line[at]))
            break;
        before = character.columns > 0 ? character.columns : before;
        columns += character.columns;
        at += character.length;
    }
    return at;
}

bool TakeWord(std::u16string_view& line, scWord& word) {
    word = {};
    for (; !line.empty(); line.remove_prefix(1)) {
        if (line[0] == u' ')
            word.gap = std::max<std::size_t>(word.gap, 1);
        else if (line[0] == nextCell)
            word.gap = cellGap;
        else if (line[0] == hangingIndent)
            word.hangs = true;
        else
            break;
    }
    word.text = line.substr(0, WordLength(line, word.columns));
    line.remove_prefix(word.text.size());
    return !word.text.empty();
}

class clsLayout {
  public:
    clsLayout(std::u16string_view text, std::size_t width) : text_(text), width_(width) {
        result_.reserve(text.size() + 1);
    }
    std::u16string Run();

  private:
    using Lines = std::vector<std::u16string_view>;

    void WriteRows(const Lines& rows);
    bool IsAligned(const Lines& rows, std::vector<std::size_t>& columns) const;
    void WriteLine(std::u16string_view line);
    void WriteBroken(std::u16string_view line);
    void Append(std::u16string_view text);
    void EndLine();

    std::u16string_view text_;
    std::size_t width_;
    std::u16string result_;
};

std::u16string clsLayout::Run() {
    Lines rows;
    while (!text_.empty()) {
        const std::u16string_view line = TakePart(text_, u'\r');
        if (line.find(nextCell) != line.npos) {
            rows.push_back(line);
            continue;
        }
        WriteRows(rows);
        rows.clear();
        WriteLine(line);
    }
    WriteRows(rows);
    return std::move(result_);
}

// The widest cell of each column; whether all of them have room in a line.
bool clsLayout::IsAligned(const Lines& rows, std::vector<std::size_t>& columns) const {
    const std::size_t most = width_ ? width_ : widestTable;
    for (std::u16string_view row : rows) {
        for (std::size_t cell = 0; !row.empty(); ++cell) {
            if (cell * cellGap > most)
                return false;
            columns.resize(std::max(columns.size(), cell + 1));
            columns[cell] = std::max(columns[cell], ColumnsOf(TakePart(row, nextCell)));
        }
    }
    std::size_t total = 0;
    for (const std::size_t width : columns)
        total += width + cellGap;
    return total <= most + cellGap;
}

void clsLayout::WriteRows(const Lines& rows) {
    std::vector<std::size_t> columns;
    if (!IsAligned(rows, columns)) {
        for (const std::u16string_view row : rows)
            WriteLine(row);
        return;
    }
    for (std::u16string_view row : rows) {
        for (std::size_t cell = 0; !row.empty(); ++cell) {
            const std::u16string_view text = TakePart(row, nextCell);
            Append(text);
            if (!row.empty())
                result_.append(columns[cell] - ColumnsOf(text) + cellGap, u' ');
        }
        EndLine();
    }
}

void clsLayout::WriteLine(std::u16string_view line) {
    if (width_ > 0 && line.find(wholeLine) == line.npos)
        WriteBroken(line);
    else
        Append(line);
    EndLine();
}

void clsLayout::WriteBroken(std::u16string_view line) {
    std::size_t hang = std::min(line.find_first_not_of(keptBlank), line.size());
    line.remove_prefix(hang - std::min(hang, width_ / 2));
    std::size_t column = 0;
    bool isFirst = true;
    for (scWord word; TakeWord(line, word); isFirst = false) {
        if (isFirst)
            word.gap = 0;
        if (!isFirst && !word.hangs && column + word.gap + word.columns > width_) {
            EndLine();
            column = std::min(hang, width_ / 2);
            word.gap = 0;
            result_.append(column, u' ');
        }
        result_.append(word.gap, u' ');
        column += word.gap;
        if (word.hangs)
            hang = column;
        Append(word.text);
        column += word.columns;
    }
}

void clsLayout::Append(std::u16string_view text) {
    for (const char16_t c : text) {
        switch (c) {
        case nextCell:
            result_.append(cellGap, u' ');
            break;
        case keptBlank:
            result_ += u' ';
            break;
        case leftGuillemet:
            result_ += u'«';
            break;
        case rightGuillemet:
            result_ += u'»';
            break;
        case wholeLine:
        case hangingIndent:
            break;
        default:
            result_ += c;
        }
    }
}

void clsLayout::EndLine() {
    while (result_.ends_with(u' '))
        result_.pop_back();
    result_ += u'\n';
}

} // namespace

std::u16string LaidOut(std::u16string_view text, std::size_t width) {
    return clsLayout(text, width).Run();
}

} // namespace tool::html
