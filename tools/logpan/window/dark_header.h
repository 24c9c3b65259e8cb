// A list's header in the colours of a dark theme, which no header draws by itself.
#pragma once

#include "theme.h"

#include <commctrl.h>

namespace tool::logpan {

// The answer to the header's question how to draw; it is asked for the whole and for each title.
LRESULT DrawHeader(const NMCUSTOMDRAW& drawing, const clsTheme& theme);

} // namespace tool::logpan
