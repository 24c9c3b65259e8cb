// The viewer with its window.
#pragma once

#include "arguments.h"

namespace tool::logpan {

ExitCode RunWindow(const scArguments& arguments);

} // namespace tool::logpan
