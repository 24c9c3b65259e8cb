// Lists of file patterns: "notes.txt; C:\Data\*.log", names and wildcard patterns between semicolons.
#pragma once

#include <string_view>

namespace tvut {

// Takes the next element off a list, without the blanks around it; the empty text at its end.
// Empty elements are passed over.
std::u16string_view UtilpTakeFilePattern(std::u16string_view& patterns);

struct scFilePattern {
    std::u16string_view folder; // with what separates it from the name; may be empty
    std::u16string_view name;

    explicit scFilePattern(std::u16string_view text);
    bool HasWildcards() const { return name.find_first_of(u"*?") != std::u16string_view::npos; }
};

// Whether a file's name matches a pattern: * stands for any characters, ? for one, *.* for every name;
// others compare without regard to case.
bool UtilpMatchesPattern(std::u16string_view name, std::u16string_view pattern);

} // namespace tvut
