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

bool isSame(std::string_view a, std::string_view b) {
    const auto lower = [](char unit) { return unit >= 'A' && unit <= 'Z' ? unit + ('a' - 'A') : unit; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char one, char other) { return lower(one) == lower(other); });
}

bool endsWith(std::string_view name, std::string_view ending) {
    return name.size() >= ending.size() && isSame(name.substr(name.size() - ending.size()), ending);
}

// Takes the next line that is not blank, without its indentation; nothing at the end.
std::string_view takeLine(std::string_view& text) {
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find_first_of(lineEnds));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
        if (!line.empty())
            return line;
    }
    return {};
}

bool isComment(std::string_view line) {
    return line.starts_with('#') || line.starts_with(';');
}

bool isItem(std::string_view line) {
    const std::size_t equals = line.find('=');
    return equals != std::string_view::npos && equals > 0;
}

// A name in brackets, and a comment at most behind it.
bool isSection(std::string_view line) {
    const std::size_t end = line.find(']');
    if (!line.starts_with('[') || end == std::string_view::npos)
        return false;
    std::string_view behind = line.substr(end + 1);
    behind.remove_prefix(std::min(behind.find_first_not_of(blanks), behind.size()));
    return behind.empty() || isComment(behind);
}

// Texts know TAB, line ends, form feed, and the end of the file and the escape of terminals.
bool isControl(char unit) {
    return (unit >= 0 && unit < ' ' &&
            std::string_view{"\t\n\v\f\r\x1a\x1b"}.find(unit) == std::string_view::npos) ||
           unit == '\x7f';
}

bool isBinary(std::string_view text) {
    const auto controls = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isControl));
    return text.find('\0') != std::string_view::npos || controls > text.size() / 20;
}

FileKind kindOfLines(std::string_view text) {
    bool items = false;
    for (std::string_view line = takeLine(text); !line.empty(); line = takeLine(text)) {
        if (line == rootHeader)
            return FileKind::text;
        if (isSection(line)) // a block would make it a list of a profile whose root list is missing
            return takeLine(text) == "{" ? FileKind::other : FileKind::plainIni;
        if (!isComment(line) && !isItem(line))
            return FileKind::other;
        items = items || !isComment(line);
    }
    return items ? FileKind::plainIni : FileKind::comments;
}

// A profile that something precedes is one for the library, too.
bool hasRootHeader(std::string_view text) {
    for (std::string_view line = takeLine(text); !line.empty(); line = takeLine(text))
        if (line.starts_with('['))
            return line == rootHeader;
    return false;
}

// The last line of a beginning may be half a line.
std::string wholeLines(std::string text, bool cut) {
    const std::size_t end = text.find_last_of(lineEnds);
    if (cut && end != std::string::npos)
        text.resize(end);
    return text;
}

// What other tools wrote anew has other declarations, or several elements in a line, which are not read.
bool isOwnXml(std::string_view text) {
    if (takeLine(text) != xmlDeclaration)
        return false;
    std::string_view line = takeLine(text);
    while (!line.empty() &&
           !isSame(line.substr(0, xmlRoot.size() - 1), xmlRoot.substr(0, xmlRoot.size() - 1)))
        line = takeLine(text);
    return isSame(line, xmlRoot);
}

bool isOwnXfdf(std::string_view text) {
    return std::all_of(std::begin(xfdfBeginning), std::end(xfdfBeginning),
                       [&](std::string_view line) { return takeLine(text) == line; });
}

Contents contentsOfMarkup(std::string_view text) {
    const std::string_view root = markupRoot(text);
    if (isSame(root, "xfdf"))
        return {isOwnXfdf(text) ? FileKind::xfdf : FileKind::otherXfdf, std::string{root}};
    if (isSame(root, "profile") && isOwnXml(text))
        return {FileKind::xml, std::string{root}};
    return {FileKind::markup, std::string{root}};
}

} // namespace

Contents contentsOfBytes(std::string_view bytes) {
    if (bytes.starts_with(compressedMark))
        return {FileKind::compressed, {}};
    const std::string text = wholeLines(headText(bytes.substr(0, lookAhead)), bytes.size() >= lookAhead);
    std::string_view rest = text;
    const std::string_view first = takeLine(rest);
    if (first.empty())
        return {FileKind::empty, {}};
    if (hasRootHeader(text))
        return {FileKind::text, {}};
    if (isBinary(text))
        return {FileKind::binary, {}};
    return first.starts_with('<') ? contentsOfMarkup(text) : Contents{kindOfLines(text), {}};
}

Contents contentsOfFile(const std::wstring& path) {
    const InputFile file{path};
    if (file.isOpen())
        return contentsOfBytes(file.read(lookAhead));
    return {file.error() == ERROR_FILE_NOT_FOUND || file.error() == ERROR_PATH_NOT_FOUND
                ? FileKind::missing
                : FileKind::unreadable,
            {}};
}

bool hasIniName(std::string_view name) {
    return endsWith(name, ".ini") || endsWith(name, ".conf");
}

bool hasXfdfName(std::string_view name) {
    return endsWith(name, ".xfdf");
}

bool hasXmlName(std::string_view name) {
    return endsWith(name, ".xml");
}

} // namespace tool::prof
