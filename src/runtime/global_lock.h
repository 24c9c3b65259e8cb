// The lock over the job registry, the heaps and the groups of diagnostic lines, held for the whole of a
// call. Order of locks: this one, then the diagnostic writer's, then the one of the app-local data.
#pragma once

#include "platform/critical_section.h"

#include <mutex>

namespace tvut {

clsCriticalSection& UtilpGlobalLock() noexcept;

// Holds the global lock for exports. A viewer is looked for before, if that is due: it may need the loader,
// and client modules open their jobs from within the loader.
class clsGlobalLockGuard {
  public:
    clsGlobalLockGuard() noexcept;

    // Whether nobody listened to diagnostics when the lock was taken: saves asking again.
    bool Silent() const noexcept { return silent_; }

  private:
    bool silent_; // found out before the lock is taken
    std::lock_guard<clsCriticalSection> lock_;
};

} // namespace tvut
