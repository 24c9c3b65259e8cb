// A clock for the DLL that only its own waiting moves, some times faster: patience ends at once.
#pragma once

#include "import_hook.h"

namespace testing_prof {

class FakeClock {
  public:
    explicit FakeClock(DWORD pace = 1) {
        now = 0;
        pace_ = pace;
    }

    static inline ULONGLONG now; // milliseconds

  private:
    static ULONGLONG WINAPI tell() { return now; }
    static void WINAPI wait(DWORD milliseconds) { now += milliseconds * pace_; }

    static inline DWORD pace_;
    ImportHook hooks_[2] = {ImportHook("GetTickCount64", reinterpret_cast<void*>(tell)),
                            ImportHook("Sleep", reinterpret_cast<void*>(wait))};
};

} // namespace testing_prof
