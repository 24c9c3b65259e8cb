// Which lines are shown.
#pragma once

#include "line.h"
#include "pattern.h"

namespace tool::logpan {

// A line is shown when its text or module has what is included, and neither has what is excluded. An empty
// pattern decides nothing. Where a pattern cannot decide, the line is shown.
struct scFilter {
    clsPattern include;
    clsPattern exclude;

    bool Shows(const scLine& line) const {
        return (include.IsEmpty() || include.IsIn(line.text, true) || include.IsIn(line.module, true)) &&
               !exclude.IsIn(line.text, false) && !exclude.IsIn(line.module, false);
    }
};

} // namespace tool::logpan
