// Which lines are shown.
#ifndef LOGPAN_FILTER_H
#define LOGPAN_FILTER_H

#include "line.h"
#include "pattern.h"

namespace tool::logpan {

// A line is shown when its text or module has what is included, and neither has what is excluded. An empty
// pattern decides nothing. Where a pattern cannot decide, the line is shown.
struct Filter {
    Pattern include;
    Pattern exclude;

    bool shows(const Line& line) const {
        return (include.isEmpty() || include.isIn(line.text, true) || include.isIn(line.module, true)) &&
               !exclude.isIn(line.text, false) && !exclude.isIn(line.module, false);
    }
};

} // namespace tool::logpan

#endif
