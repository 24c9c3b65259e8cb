// A lock for some tens of instructions, for std::lock_guard: one word, no system object. Never taken twice by
// a thread.
//
// What is held so shortly is free again after a few looks; asking the system to wait would cost ten times
// more. A holder that has lost its processor gets it back, whatever its priority: who finds the lock taken
// yields after some looks, and sleeps after some more.
#pragma once

#include <atomic>

namespace tvut {

// Lets a little time pass: more, the more often the caller has looked already.
void PlatformPause(unsigned looks) noexcept;

class clsSpinLock {
  public:
    constexpr clsSpinLock() noexcept = default;
    clsSpinLock(const clsSpinLock&) = delete;
    clsSpinLock& operator=(const clsSpinLock&) = delete;

    void lock() noexcept {
        for (unsigned looks = 0; taken_.exchange(true, std::memory_order_acquire); ++looks)
            while (taken_.load(std::memory_order_relaxed))
                PlatformPause(looks++);
    }
    void unlock() noexcept { taken_.store(false, std::memory_order_release); }

  private:
    std::atomic<bool> taken_{false};
};

} // namespace tvut
