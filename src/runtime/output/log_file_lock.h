// Keeps the lines of processes that write to one log file apart.
//
// Not every system appends in one step, and a kernel mutex would cost more than the line: so the lock is a
// word of shared memory that holds the owner's process id. An owner that dies is noticed; one that never
// releases it costs a second once, and the lock is not asked for again.
#pragma once

#include "platform/mapping.h"

namespace tvut {

class clsLogFileLock {
  public:
    // The lock of an open file, whatever name it was opened by. Without shared memory nothing is locked.
    void Open(HANDLE file) noexcept;

    // For std::lock_guard. One thread of a process at a time.
    void lock() noexcept;
    void unlock() noexcept;

  private:
    bool TryLock() noexcept;
    void BreakDeadLock() noexcept;

    clsMapping mapping_;
    LONG self_ = 0; // this process's id
    bool held_ = false;
};

} // namespace tvut
