// A whole filter as one line of text: how filters are saved, and how rules say which lines they are for.
//
//     printer                               the text or module has "printer"
//     text=heap,!"two words"                has "heap" and not "two words"
//     regex="^\d+ objects" severity=error   the same by regular expressions, and only errors
#pragma once

#include "filter.h"

namespace tool::logpan {

struct scFilterText {
    std::wstring include;
    std::wstring exclude;
    PatternKind kind = PatternKind::substring;
    clsCriteria criteria;
};

// Throws BadPattern for what is no filter.
scFilterText ParseFilter(std::wstring_view text);

std::wstring TextOf(const scFilterText& filter);

// Ready for use. Throws BadPattern for a regular expression that is none.
scFilter MakeFilter(const scFilterText& text);

} // namespace tool::logpan
