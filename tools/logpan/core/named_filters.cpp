// Each filter is made once, to see that it is one.
#include "named_filters.h"

#include "filter_text.h"

#include <algorithm>

namespace tool::logpan {

namespace {

std::wstring_view Trimmed(std::wstring_view text) {
    constexpr std::wstring_view blanks = L" \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

scNamedFilter ParseOne(std::wstring_view line) {
    const std::size_t colon = line.find(L':');
    if (colon == std::wstring_view::npos || Trimmed(line.substr(0, colon)).empty())
        throw scBadPattern{"a name and a colon are missing before the filter"};
    const std::wstring_view text = Trimmed(line.substr(colon + 1));
    if (text.empty())
        throw scBadPattern{"there is no filter after the colon"};
    MakeFilter(ParseFilter(text));
    return {std::wstring{Trimmed(line.substr(0, colon))}, std::wstring{text}};
}

} // namespace

std::vector<scNamedFilter> ParseNamedFilters(std::wstring_view text) {
    std::vector<scNamedFilter> filters;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::wstring_view line = text.substr(0, text.find(L'\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (Trimmed(line).empty())
            continue;
        try {
            filters.push_back(ParseOne(line));
        } catch (const scBadPattern& bad) {
            throw scBadPattern{"line " + std::to_string(number) + ": " + bad.reason};
        }
    }
    return filters;
}

std::wstring TextOf(const std::vector<scNamedFilter>& filters) {
    std::wstring text;
    for (const scNamedFilter& filter : filters)
        text += filter.name + L": " + filter.text + L"\r\n";
    return text;
}

} // namespace tool::logpan
