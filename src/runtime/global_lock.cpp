#include "runtime/global_lock.h"

#include "runtime/output/writer.h"

namespace tvut {

namespace {

clsCriticalSection globalLock;

} // namespace

clsCriticalSection& UtilpGlobalLock() noexcept {
    return globalLock;
}

clsGlobalLockGuard::clsGlobalLockGuard() noexcept : silent_(!UtilpDiagnosticWriter().LookAhead()) {
    globalLock.lock();
}

clsGlobalLockGuard::~clsGlobalLockGuard() {
    globalLock.unlock();
}

} // namespace tvut
