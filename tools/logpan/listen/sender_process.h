// Which process a local port belongs to.
#pragma once

#include "writing_process.h"

namespace tool::logpan {

// Null where the system does not know: the program may have ended, or closed its socket. The name is empty
// for a process that may not be looked at. Takes milliseconds.
ProcessPtr ProcessOfPort(std::uint16_t port);

} // namespace tool::logpan
