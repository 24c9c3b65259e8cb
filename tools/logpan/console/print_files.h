// Lines of files to standard output.
#pragma once

#include "arguments.h"

namespace tool::logpan {

// One file after the other. Throws Failure for one that cannot be read.
ExitCode PrintFiles(const scArguments& arguments);

} // namespace tool::logpan
