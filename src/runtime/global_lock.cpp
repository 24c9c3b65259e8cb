#include "runtime/global_lock.h"

#include "runtime/output/writer.h"

#include <atomic>

namespace tvut {

namespace {

clsCriticalSection globalLock;
std::atomic<DWORD> holder{0}; // a thread, which alone writes its own id here
int depth = 0;                // of the holder's guards

} // namespace

clsCriticalSection& UtilpGlobalLock() noexcept {
    return globalLock;
}

clsGlobalLockGuard::clsGlobalLockGuard() noexcept : silent_(!UtilpDiagnosticWriter().LookAhead()) {
    globalLock.lock();
    ++depth;
    holder.store(GetCurrentThreadId(), std::memory_order_relaxed);
}

clsGlobalLockGuard::~clsGlobalLockGuard() {
    if (--depth == 0)
        holder.store(0, std::memory_order_relaxed);
    globalLock.unlock();
}

bool UtilpHoldsGlobalLock() noexcept {
    return holder.load(std::memory_order_relaxed) == GetCurrentThreadId();
}

} // namespace tvut
