// Ctrl+C, a closed console and the like: ends the wait for lines, and lets the program finish.
#pragma once

#include "owned.h"
#include "store.h"

namespace tool::logpan {

// One at a time. It stands outside of all that has to be cleaned up when the program ends: where a console
// is closed, the system kills the process as soon as its handler returns, so that waits for us.
class clsInterrupt {
  public:
    explicit clsInterrupt(clsStore& store);
    ~clsInterrupt();
    clsInterrupt(const clsInterrupt&) = delete;
    clsInterrupt& operator=(const clsInterrupt&) = delete;
};

} // namespace tool::logpan
