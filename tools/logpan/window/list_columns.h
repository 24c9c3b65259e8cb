// What the columns of the list show.
#pragma once

#include "shown_lines.h"

#include <span>

namespace tool::logpan {

struct scListColumn {
    const wchar_t* title; // its name in the settings, too
    int characters;       // its width; 0: what the others leave
    bool shown;           // until the user chooses
    std::wstring (*text)(const clsShownLines& lines, std::size_t row);
};

// The last one is the text, which is always shown.
std::span<const scListColumn> ListColumns();

} // namespace tool::logpan
