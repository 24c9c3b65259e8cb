// The lock over the job registry, the heaps and the groups of diagnostic lines, held for the whole of a
// call. Order of locks: this one, then the diagnostic writer's, then the one of the app-local data.
#pragma once

#include "platform/critical_section.h"

#include <mutex>

namespace tvut {

clsCriticalSection& UtilpGlobalLock() noexcept;

using clsGlobalLockGuard = std::lock_guard<clsCriticalSection>;

} // namespace tvut
