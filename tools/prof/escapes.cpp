// A backslash is written twice only where it would be read as the beginning of an escape, so that paths of
// files look as they are. What a unit becomes depends on the next one alone, and reading takes the same look.
#include "escapes.h"

#include "hex_digit.h"
#include "printable.h"

#include <algorithm>

namespace tool::prof {

namespace {

constexpr std::wstring_view marksOfPaths = L"/=*?"; // escaped in names, but not in values

// Stands before a * or ? that is no character of the name itself. Names hold no zeros.
constexpr wchar_t wildcard = L'\0';

struct scControlLetter {
    wchar_t letter;
    wchar_t unit;
};
constexpr scControlLetter controlLetters[] = {{L'n', L'\n'}, {L'r', L'\r'}, {L't', L'\t'}};

struct scNumberLetter {
    wchar_t letter;
    std::size_t digits;
};
constexpr scNumberLetter numberLetters[] = {{L'x', 2}, {L'u', 4}};

bool Holds(std::wstring_view marks, wchar_t unit) {
    return marks.find(unit) != marks.npos;
}

struct scEscape {
    wchar_t unit;
    std::size_t length; // of what follows the backslash; 0: it is no escape
};

scEscape NumberAfter(std::wstring_view rest) {
    for (const scNumberLetter& known : numberLetters) {
        if (rest.front() != known.letter || rest.size() <= known.digits)
            continue;
        const std::wstring_view digits = rest.substr(1, known.digits);
        unsigned value = 0;
        for (const wchar_t digit : digits) {
            if (HexDigit(digit) == 16)
                return {};
            value = value * 16 + HexDigit(digit);
        }
        if (value != 0) // names and values end with a zero
            return {static_cast<wchar_t>(value), 1 + known.digits};
    }
    return {};
}

// What follows a backslash.
scEscape EscapeAfter(std::wstring_view rest, std::wstring_view marks) {
    if (rest.empty())
        return {};
    if (rest.front() == L'\\' || Holds(marks, rest.front()))
        return {rest.front(), 1};
    for (const scControlLetter& known : controlLetters)
        if (rest.front() == known.letter)
            return {known.unit, 1};
    return NumberAfter(rest);
}

// Takes one unit from the front of a text that is not empty.
wchar_t TakeUnit(std::wstring_view& text, std::wstring_view marks) {
    const wchar_t first = text.front();
    text.remove_prefix(1);
    if (first != L'\\')
        return first;
    const scEscape escape = EscapeAfter(text, marks);
    text.remove_prefix(escape.length);
    return escape.length == 0 ? first : escape.unit;
}

std::wstring Unescaped(std::wstring_view text, std::wstring_view marks) {
    std::wstring result;
    while (!text.empty())
        result += TakeUnit(text, marks);
    return result;
}

// Whether a backslash would be read with what is written after it.
bool WouldEscape(std::wstring_view rest, std::wstring_view marks) {
    if (rest.empty())
        return !marks.empty(); // "/" or "=" follows a name
    return PlainRun(rest.substr(0, 2), 0) == 0 || EscapeAfter(rest, marks).length != 0;
}

void AppendText(std::wstring& line, std::wstring_view text, std::wstring_view marks) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of(L"\\/=*?", at), text.size());
        const std::size_t plain = PlainRun(text.substr(0, end), at);
        line += text.substr(at, plain);
        at += plain;
        if (at == text.size())
            break;
        const std::wstring_view unit = text.substr(at++, 1);
        if (unit == L"\\" ? WouldEscape(text.substr(at), marks) : Holds(marks, unit.front()))
            line += L'\\';
        line += at > end ? std::wstring{unit} : Printable(unit);
    }
}

} // namespace

Names NamesInPath(std::wstring_view path) {
    Names names = PatternsInPath(path);
    for (std::wstring& name : names)
        std::erase(name, wildcard);
    return names;
}

Names PatternsInPath(std::wstring_view path) {
    if (path.starts_with(L'/'))
        path.remove_prefix(1);
    Names names(1);
    while (!path.empty()) {
        const wchar_t first = path.front();
        const wchar_t unit = TakeUnit(path, marksOfPaths);
        if (first == L'/') {
            names.emplace_back();
            continue;
        }
        if (first == L'*' || first == L'?')
            names.back() += wildcard;
        names.back() += unit;
    }
    return names;
}

bool IsPattern(std::wstring_view path) {
    const Names names = PatternsInPath(path);
    return std::any_of(names.begin(), names.end(),
                       [](const std::wstring& name) { return name.find(wildcard) != name.npos; });
}

// After a mismatch the last * takes one unit more; what an earlier one takes need not change.
bool IsMatch(std::wstring_view name, std::wstring_view pattern) {
    constexpr std::size_t none = std::wstring_view::npos;
    std::size_t at = 0;
    std::size_t piece = 0;
    std::size_t star = none;
    std::size_t afterStar = 0;
    while (at < name.size()) {
        const bool isWild = piece + 1 < pattern.size() && pattern[piece] == wildcard;
        if (isWild && pattern[piece + 1] == L'*') {
            star = at;
            piece += 2;
            afterStar = piece;
        } else if (isWild) {
            ++at;
            piece += 2;
        } else if (piece < pattern.size() && pattern[piece] == name[at]) {
            ++at;
            ++piece;
        } else if (star != none) {
            at = ++star;
            piece = afterStar;
        } else {
            return false;
        }
    }
    while (piece + 1 < pattern.size() && pattern[piece] == wildcard && pattern[piece + 1] == L'*')
        piece += 2;
    return piece == pattern.size();
}

void AppendName(std::wstring& line, std::wstring_view name) {
    AppendText(line, name, marksOfPaths);
}

void AppendValue(std::wstring& line, std::wstring_view value) {
    AppendText(line, value, {});
}

std::optional<scFlatLine> ParseFlatLine(std::wstring_view line) {
    if (!line.starts_with(L'/'))
        return std::nullopt;
    std::wstring_view rest = line;
    bool endsInSlash = false;
    while (!rest.empty() && rest.front() != L'=') {
        endsInSlash = rest.front() == L'/';
        TakeUnit(rest, marksOfPaths);
    }
    scFlatLine result{NamesInPath(line.substr(0, line.size() - rest.size())), std::nullopt};
    if (!rest.empty())
        result.value = Unescaped(rest.substr(1), {});
    else if (endsInSlash && line.size() > 1)
        result.names.pop_back();
    else
        return std::nullopt;
    return result;
}

} // namespace tool::prof
