// The viewer with its window.
#ifndef LOGPAN_RUN_WINDOW_H
#define LOGPAN_RUN_WINDOW_H

#include "arguments.h"

namespace tool::logpan {

ExitCode runWindow(const Arguments& arguments);

} // namespace tool::logpan

#endif
