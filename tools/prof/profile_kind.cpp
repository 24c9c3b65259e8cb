// Reads lines until one decides: the first header, or the first line that is nothing that an INI file holds.
#include "profile_kind.h"

#include "head_text.h"
#include "input_file.h"
#include "markup_root.h"

#include <algorithm>

namespace tool::prof {

namespace {

constexpr DWORD lookAhead = 64 * 1024;
constexpr std::string_view compressedMark = "ZZmQ";
constexpr std::string_view rootHeader = "[/]";
constexpr std::string_view xmlDeclaration = R"(<?xml version="1.0" encoding="UTF-16" standalone="yes"?>)";
constexpr std::string_view xmlRoot = "<profile>";
constexpr std::string_view xfdfBeginning[] = {
    R"(<?xml version="1.0" encoding="UTF-8"?>)",
    R"(<xfdf xmlns="http://ns.adobe.com/xfdf/" xml:space="preserve">)",
    "<fields>",
};
constexpr std::string_view blanks = " \t";
constexpr std::string_view lineEnds = "\r\n";

bool IsSame(std::string_view a, std::string_view b) {
    const auto lower = [](char unit) { return unit >= 'A' && unit <= 'Z' ? unit + ('a' - 'A') : unit; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char one, char other) { return lower(one) == lower(other); });
}

bool EndsWith(std::string_view name, std::string_view ending) {
    return name.size() >= ending.size() && IsSame(name.substr(name.size() - ending.size()), ending);
}

// Takes the next line that is not blank, without its indentation; nothing at the end.
std::string_view TakeLine(std::string_view& text) {
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find_first_of(lineEnds));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
        if (!line.empty())
            return line;
    }
    return {};
}

bool IsComment(std::string_view line) {
    return line.starts_with('#') || line.starts_with(';');
}

bool IsItem(std::string_view line) {
    const std::size_t equals = line.find('=');
    return equals != std::string_view::npos && equals > 0;
}

// A name in brackets, and at most a comment after it.
bool IsSection(std::string_view line) {
    const std::size_t end = line.find(']');
    if (!line.starts_with('[') || end == std::string_view::npos)
        return false;
    std::string_view rest = line.substr(end + 1);
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
    return rest.empty() || IsComment(rest);
}

// Texts know TAB, line ends, form feed, and the end of the file and the escape of terminals.
bool IsControl(char unit) {
    return (unit >= 0 && unit < ' ' &&
            std::string_view{"\t\n\v\f\r\x1a\x1b"}.find(unit) == std::string_view::npos) ||
           unit == '\x7f';
}

bool IsBinary(std::string_view text) {
    const auto controls = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsControl));
    return text.find('\0') != std::string_view::npos || controls > text.size() / 20;
}

FileKind KindOfLines(std::string_view text) {
    bool items = false;
    for (std::string_view line = TakeLine(text); !line.empty(); line = TakeLine(text)) {
        if (line == rootHeader)
            return FileKind::text;
        if (IsSection(line)) // a block would make it a list of a profile whose root list is missing
            return TakeLine(text) == "{" ? FileKind::other : FileKind::plainIni;
        if (!IsComment(line) && !IsItem(line))
            return FileKind::other;
        items = items || !IsComment(line);
    }
    return items ? FileKind::plainIni : FileKind::comments;
}

// A profile that something precedes is one for the library, too.
bool HasRootHeader(std::string_view text) {
    for (std::string_view line = TakeLine(text); !line.empty(); line = TakeLine(text))
        if (line.starts_with('['))
            return line == rootHeader;
    return false;
}

// The first units that are no blanks.
std::string Beginning(std::string_view text, std::size_t count) {
    std::string result;
    for (const char unit : text) {
        if (result.size() == count)
            break;
        if (std::string_view{" \t\r\n"}.find(unit) == std::string_view::npos)
            result += unit;
    }
    return result;
}

// A block of the text form begins with an item or a brace, a section may be named {...}, but hardly {"...}.
bool IsJson(std::string_view text) {
    const std::string beginning = Beginning(text, 3);
    return beginning.starts_with("{\"") || beginning.starts_with("{}") || beginning == "[{\"";
}

// The last line of a beginning may be half a line.
std::string WholeLines(std::string text, bool cut) {
    const std::size_t end = text.find_last_of(lineEnds);
    if (cut && end != std::string::npos)
        text.resize(end);
    return text;
}

// What other tools wrote anew has other declarations, or several elements in a line.
bool IsOwnXml(std::string_view text) {
    if (TakeLine(text) != xmlDeclaration)
        return false;
    std::string_view line = TakeLine(text);
    while (!line.empty() &&
           !IsSame(line.substr(0, xmlRoot.size() - 1), xmlRoot.substr(0, xmlRoot.size() - 1)))
        line = TakeLine(text);
    return IsSame(line, xmlRoot);
}

bool IsOwnXfdf(std::string_view text) {
    return std::all_of(std::begin(xfdfBeginning), std::end(xfdfBeginning),
                       [&](std::string_view line) { return TakeLine(text) == line; });
}

scContents ContentsOfMarkup(std::string_view text) {
    const std::string_view root = MarkupRoot(text);
    if (IsSame(root, "xfdf"))
        return {IsOwnXfdf(text) ? FileKind::xfdf : FileKind::otherXfdf, std::string{root}};
    if (IsSame(root, "profile"))
        return {IsOwnXml(text) ? FileKind::xml : FileKind::otherXml, std::string{root}};
    return {FileKind::markup, std::string{root}};
}

} // namespace

scContents ContentsOfBytes(std::string_view bytes) {
    if (bytes.starts_with(compressedMark))
        return {FileKind::compressed, {}};
    const std::string text = WholeLines(HeadText(bytes.substr(0, lookAhead)), bytes.size() >= lookAhead);
    std::string_view rest = text;
    const std::string_view first = TakeLine(rest);
    if (first.empty())
        return {FileKind::empty, {}};
    if (HasRootHeader(text))
        return {FileKind::text, {}};
    if (IsBinary(text))
        return {FileKind::binary, {}};
    if (IsJson(text))
        return {FileKind::json, {}};
    return first.starts_with('<') ? ContentsOfMarkup(text) : scContents{KindOfLines(text), {}};
}

scContents ContentsOfFile(const std::wstring& path) {
    const clsInputFile file{path};
    if (file.IsOpen())
        return ContentsOfBytes(file.Read(lookAhead));
    return {file.Error() == ERROR_FILE_NOT_FOUND || file.Error() == ERROR_PATH_NOT_FOUND
                ? FileKind::missing
                : FileKind::unreadable,
            {}};
}

bool HasIniName(std::string_view name) {
    return EndsWith(name, ".ini") || EndsWith(name, ".conf");
}

bool HasXfdfName(std::string_view name) {
    return EndsWith(name, ".xfdf");
}

bool HasXmlName(std::string_view name) {
    return EndsWith(name, ".xml");
}

bool HasJsonName(std::string_view name) {
    return EndsWith(name, ".json");
}

} // namespace tool::prof
