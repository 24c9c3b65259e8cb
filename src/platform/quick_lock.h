// A lock that most hold for some tens of instructions and a few for milliseconds, for std::lock_guard. Its
// owner may take it again. It needs nothing at the module's start.
//
// A critical section does the same with two locked instructions and two calls of the system a time, which is
// as much as half of what an object of a heap costs; here it is one, and leaving is a plain store. The
// processor may look whether somebody sleeps before others see that store, so a sleeper can be missed: it
// looks again by itself after some milliseconds.
#pragma once

#include "platform/this_thread.h"

#include <atomic>
#include <windows.h>

namespace tvut {

class alignas(64) clsQuickLock { // alone in its cache line
  public:
    constexpr clsQuickLock() noexcept = default;
    clsQuickLock(const clsQuickLock&) = delete;
    clsQuickLock& operator=(const clsQuickLock&) = delete;

    void lock() noexcept {
        if (!Take())
            Wait();
    }
    bool try_lock() noexcept { return Take(); }
    void unlock() noexcept {
        if (again_ != 0) {
            --again_;
            return;
        }
        owner_.store(nullptr, std::memory_order_release);
        std::atomic_signal_fence(std::memory_order_seq_cst);
        if (somebodySleeps_.load(std::memory_order_relaxed))
            WakeOne();
    }

    bool IsTaken() const noexcept { return owner_.load(std::memory_order_relaxed) != nullptr; }

    // Whether the calling thread has it. Nobody else writes this thread there.
    bool IsMine() const noexcept { return owner_.load(std::memory_order_relaxed) == PlatformThisThread(); }

  private:
    bool Take() noexcept {
        const void* owner = nullptr;
        if (owner_.compare_exchange_strong(owner, PlatformThisThread(), std::memory_order_acquire,
                                           std::memory_order_relaxed))
            return true;
        if (owner != PlatformThisThread())
            return false;
        ++again_;
        return true;
    }
    void Wait() noexcept;
    void WakeOne() noexcept;

    std::atomic<const void*> owner_{nullptr};
    std::atomic<bool> somebodySleeps_{false};
    unsigned again_ = 0; // how often its owner has taken it after the first time

    SRWLOCK room_ = SRWLOCK_INIT; // where threads sleep
    CONDITION_VARIABLE left_ = CONDITION_VARIABLE_INIT;
    unsigned sleepers_ = 0; // guarded by the room's lock
};

} // namespace tvut
