#include "runtime/global_lock.h"

#include "runtime/output/writer.h"

namespace tvut {

namespace {

clsCriticalSection globalLock;

} // namespace

clsCriticalSection& UtilpGlobalLock() noexcept {
    return globalLock;
}

clsGlobalLockGuard::clsGlobalLockGuard() noexcept
    : silent_(!UtilpDiagnosticWriter().LookAhead()), lock_(globalLock) {}

} // namespace tvut
