// Lines to standard output, for pipes and servers.
#pragma once

#include "arguments.h"

namespace tool::logpan {

ExitCode RunConsole(const scArguments& arguments);

} // namespace tool::logpan
