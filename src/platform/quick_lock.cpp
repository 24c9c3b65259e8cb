#include "platform/quick_lock.h"

#include <emmintrin.h>

namespace tvut {

namespace {

constexpr unsigned mostPauses = 200; // some microseconds: as long as most holders need
constexpr DWORD longestSleep = 5;    // milliseconds

} // namespace

void clsQuickLock::Wait() noexcept {
    for (unsigned pauses = 0; pauses < mostPauses; ++pauses) {
        _mm_pause();
        if (owner_.load(std::memory_order_relaxed) == nullptr && Take())
            return;
    }
    AcquireSRWLockExclusive(&room_);
    ++sleepers_;
    for (;;) {
        somebodySleeps_.store(true); // and only then the last look
        if (Take())
            break;
        SleepConditionVariableSRW(&left_, &room_, longestSleep, 0);
    }
    somebodySleeps_.store(--sleepers_ != 0);
    ReleaseSRWLockExclusive(&room_);
}

// One call for one sleeper: it says again that others sleep when it has the lock.
void clsQuickLock::WakeOne() noexcept {
    AcquireSRWLockExclusive(&room_);
    somebodySleeps_.store(false);
    ReleaseSRWLockExclusive(&room_);
    WakeConditionVariable(&left_);
}

} // namespace tvut
