// The frame of a call that works under the global lock.
#pragma once

#include "runtime/global_lock.h"

#include <mutex>

namespace tvut {

// Holds the global lock. A viewer is looked for before, if that is due: it may need the loader, and client
// modules open their jobs from within the loader.
class clsGlobalLockGuard {
  public:
    clsGlobalLockGuard() noexcept;

    // Whether nobody listened to diagnostics when the lock was taken: saves asking again.
    bool Silent() const noexcept { return silent_; }

  private:
    bool silent_; // found out before the lock is taken
    std::lock_guard<clsQuickLock> lock_;
};

} // namespace tvut
