// Trying again while somebody else has a file open.
#pragma once

#include <windows.h>

namespace tvut {

constexpr DWORD retryInterval = 100; // milliseconds

// Calls attempt until it succeeds, fails for another reason than sharing, or patience, in milliseconds, ends.
// Gives the last error, 0 for success.
template <class Attempt>
DWORD PlatformRetryWhileShared(ULONGLONG patience, Attempt attempt) {
    const ULONGLONG start = GetTickCount64();
    for (;;) {
        const DWORD error = attempt();
        if (error != ERROR_SHARING_VIOLATION || GetTickCount64() - start >= patience)
            return error;
        Sleep(retryInterval);
    }
}

} // namespace tvut
