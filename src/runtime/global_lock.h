// The lock over the job registry, the heaps and the groups of diagnostic lines, held for the whole of a
// call. Order of locks: this one, then the diagnostic writer's, then the one of the app-local data.
//
// Exports take it by the guard of locked_call.h.
#pragma once

#include "platform/quick_lock.h"

namespace tvut {

inline clsQuickLock& UtilpGlobalLock() noexcept {
    static constinit clsQuickLock lock;
    return lock;
}

} // namespace tvut
