#include "runtime/global_lock.h"

namespace tvut {

namespace {

clsCriticalSection globalLock;

} // namespace

clsCriticalSection& UtilpGlobalLock() noexcept {
    return globalLock;
}

} // namespace tvut
