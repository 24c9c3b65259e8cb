// A critical section as an object that std::lock_guard and std::unique_lock can hold.
#pragma once

#include <cassert>
#include <windows.h>

namespace tvut {

class clsCriticalSection {
  public:
    // Waits are short: a thread that finds the section taken looks again for a while before it sleeps.
    clsCriticalSection() noexcept { InitializeCriticalSectionAndSpinCount(&section_, 4000); }
    ~clsCriticalSection() { DeleteCriticalSection(&section_); }
    clsCriticalSection(const clsCriticalSection&) = delete;
    clsCriticalSection& operator=(const clsCriticalSection&) = delete;

    void lock() noexcept { EnterCriticalSection(&section_); }
    bool try_lock() noexcept { return TryEnterCriticalSection(&section_) != FALSE; }
    void unlock() noexcept {
        assert(IsMine() && "left by a thread that does not have it");
        LeaveCriticalSection(&section_);
    }

    // Whether the calling thread has it. Nobody else writes this thread's id there.
    bool IsMine() const noexcept {
        const HANDLE owner = *const_cast<const volatile HANDLE*>(&section_.OwningThread);
        return reinterpret_cast<ULONG_PTR>(owner) == GetCurrentThreadId();
    }

    // Leaves the section while the caller sleeps, until the condition is woken or the time is over.
    void Sleep(CONDITION_VARIABLE& condition, DWORD milliseconds) noexcept {
        SleepConditionVariableCS(&condition, &section_, milliseconds);
    }

  private:
    CRITICAL_SECTION section_;
};

} // namespace tvut
