// Names, patterns and values as paths and flat lines hold them.
//
// In a path \/ is a slash within a name, \= an equals sign, \* and \? are these characters. There and in the
// values of flat lines \n, \r, \t, \x1b and \ud800 are what show prints them for, and \\ is a backslash. A
// backslash before anything else is itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool::prof {

using Names = std::vector<std::wstring>;

// The names of a path, at least one; a "/" before the first changes nothing.
Names NamesInPath(std::wstring_view path);

// The names of a path as patterns: a * stands for any characters of one name, a ? for one.
Names PatternsInPath(std::wstring_view path);
bool IsPattern(std::wstring_view path);
bool IsMatch(std::wstring_view name, std::wstring_view pattern);

// Append what is read as that name, or as that value, again.
void AppendName(std::wstring& line, std::wstring_view name);
void AppendValue(std::wstring& line, std::wstring_view value);

// "/A/B=value" is an item, "/A/B/" a list.
struct scFlatLine {
    Names names;
    std::optional<std::wstring> value; // none: a list
};

// Nothing for a line of another form.
std::optional<scFlatLine> ParseFlatLine(std::wstring_view line);

} // namespace tool::prof
