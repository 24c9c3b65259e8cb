// Paths with * and ? in their names, which may lead to many items.
#pragma once

#include "escapes.h"

#include <tvut22/prof.h>

#include <string>
#include <string_view>
#include <vector>

namespace tool::prof {

struct scMatch {
    Names names;
    std::wstring value; // of an item
    ProfList list;      // null for an item
};

// What a path leads to through all lists of each name, in stored order. A * stands for any characters of one
// name, a ? for one.
std::vector<scMatch> MatchesOf(ProfJob job, std::wstring_view path);

} // namespace tool::prof
