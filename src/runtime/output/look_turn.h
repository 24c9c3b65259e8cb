// Whose turn it is to look for a viewer: one thread looks at a time, and others may wait for it.
//
// Everything here is called under the writer's lock, which the look itself does without.
#pragma once

#include "platform/critical_section.h"

namespace tvut {

class clsLookTurn {
  public:
    bool IsTaken() const noexcept { return looker_ != 0; }
    void Take() noexcept { looker_ = GetCurrentThreadId(); }
    void End() noexcept {
        looker_ = 0;
        WakeAllConditionVariable(&ended_);
    }

    // Waits until no other thread looks any more, and leaves the section meanwhile. False when that took too
    // long: the thread that looks may wait for the loader, which one of those who wait here may keep.
    bool Await(clsCriticalSection& section) noexcept;

  private:
    static constexpr DWORD longestWait = 2000; // milliseconds

    CONDITION_VARIABLE ended_ = CONDITION_VARIABLE_INIT;
    DWORD looker_ = 0; // the thread that looks right now
};

} // namespace tvut
