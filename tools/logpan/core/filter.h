// Which lines are shown.
#pragma once

#include "criteria.h"
#include "line.h"
#include "pattern.h"

namespace tool::logpan {

// A line is shown when it meets the criteria, its text or module has what is included, and neither has what
// is excluded. An empty pattern decides nothing. Where a pattern cannot decide, the line is shown.
struct scFilter {
    clsPattern include;
    clsPattern exclude;
    clsCriteria criteria{};

    bool Shows(const scLine& line) const {
        return criteria.Meets(line) &&
               (include.IsEmpty() || include.IsIn(line.text, true) || include.IsIn(line.module, true)) &&
               !exclude.IsIn(line.text, false) && !exclude.IsIn(line.module, false);
    }
};

} // namespace tool::logpan
