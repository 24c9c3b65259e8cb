// Lines to standard output, for pipes and servers.
#ifndef LOGPAN_CONSOLE_H
#define LOGPAN_CONSOLE_H

#include "arguments.h"

namespace tool::logpan {

ExitCode runConsole(const Arguments& arguments);

} // namespace tool::logpan

#endif
