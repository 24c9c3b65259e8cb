// A clock for the DLL that only its own waiting moves, some times faster: patience ends at once.
#pragma once

#include "import_hook.h"

namespace testing_prof {

class clsFakeClock {
  public:
    explicit clsFakeClock(DWORD pace = 1) {
        now = 0;
        pace_ = pace;
    }

    static inline ULONGLONG now; // milliseconds

  private:
    static ULONGLONG WINAPI Tell() { return now; }
    static void WINAPI Wait(DWORD milliseconds) { now += milliseconds * pace_; }

    static inline DWORD pace_;
    clsImportHook hooks_[2] = {clsImportHook("GetTickCount64", reinterpret_cast<void*>(Tell)),
                               clsImportHook("Sleep", reinterpret_cast<void*>(Wait))};
};

} // namespace testing_prof
