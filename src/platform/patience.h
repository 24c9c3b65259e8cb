// Trying again while somebody else has a file open.
#pragma once

#include <algorithm>
#include <windows.h>

namespace tvut {

// Milliseconds that a file is waited for while others keep it from being shared.
constexpr ULONGLONG openPatience = 10000;

// What is left of them; for several files if they are to last for all.
class clsPatience {
  public:
    explicit clsPatience(ULONGLONG milliseconds) : left_(milliseconds) {}

    // Calls attempt, every 100 ms, until it succeeds, fails for another reason than sharing, or the time is
    // over. Gives its last error, 0 for success.
    template <class Attempt>
    DWORD Try(Attempt attempt) {
        const ULONGLONG start = GetTickCount64();
        ULONGLONG waited = 0;
        DWORD error = attempt();
        for (; error == ERROR_SHARING_VIOLATION && waited < left_; error = attempt()) {
            Sleep(interval);
            waited = GetTickCount64() - start;
        }
        left_ -= std::min(left_, waited);
        return error;
    }

  private:
    static constexpr DWORD interval = 100;

    ULONGLONG left_;
};

} // namespace tvut
