// Filters with names, one a line of text: "name: filter". Saved filters are written so, and the rules that
// highlight lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool::logpan {

struct scNamedFilter {
    std::wstring name;
    std::wstring text;

    bool operator==(const scNamedFilter&) const = default;
};

// Blank lines are passed over. Throws BadPattern with the line's number for one that has no name or no
// filter, or whose filter is none.
std::vector<scNamedFilter> ParseNamedFilters(std::wstring_view text);

// Lines end with CR LF.
std::wstring TextOf(const std::vector<scNamedFilter>& filters);

} // namespace tool::logpan
