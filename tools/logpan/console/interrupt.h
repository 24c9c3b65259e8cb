// Ctrl+C, a closed console and the like: ends the wait for lines, and lets the program finish.
#ifndef LOGPAN_INTERRUPT_H
#define LOGPAN_INTERRUPT_H

#include "owned.h"
#include "store.h"

namespace tool::logpan {

// One at a time. It stands outside of all that has to be cleaned up when the program ends: where a console
// is closed, the system kills the process as soon as its handler returns, so that waits for us.
class Interrupt {
  public:
    explicit Interrupt(Store& store);
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
};

} // namespace tool::logpan

#endif
