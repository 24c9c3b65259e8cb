// What the user marks lines with.
#pragma once

#include "bookmarks.h"
#include "highlights.h"

namespace tool::logpan {

struct scMarks {
    clsHighlights highlights;
    clsBookmarks bookmarks;
};

} // namespace tool::logpan
