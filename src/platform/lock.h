// A lock of one word that needs nothing at the module's start, for std::lock_guard. Never taken twice by a
// thread.
#pragma once

#include <windows.h>

namespace tvut {

class clsLock {
  public:
    constexpr clsLock() noexcept = default;
    clsLock(const clsLock&) = delete;
    clsLock& operator=(const clsLock&) = delete;

    void lock() noexcept { AcquireSRWLockExclusive(&lock_); }
    bool try_lock() noexcept { return TryAcquireSRWLockExclusive(&lock_) != FALSE; }
    void unlock() noexcept { ReleaseSRWLockExclusive(&lock_); }

  private:
    SRWLOCK lock_ = SRWLOCK_INIT;
};

} // namespace tvut
