#include "platform/spin_lock.h"

#include <emmintrin.h>
#include <windows.h>

namespace tvut {

namespace {

constexpr unsigned pauses = 60; // some microseconds; then a processor for somebody else
constexpr unsigned yields = 60; // then an end to waiting for a thread of lower priority

} // namespace

void PlatformPause(unsigned looks) noexcept {
    if (looks < pauses)
        _mm_pause();
    else if (looks < pauses + yields)
        SwitchToThread();
    else
        Sleep(1);
}

} // namespace tvut
