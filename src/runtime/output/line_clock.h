// The time of lines: the local time, or the time since the clock was started.
#pragma once

#include "runtime/line_stamp.h"

#include <windows.h>

namespace tvut {

class clsLineClock {
  public:
    // Counts from now on, where the performance counter is asked for.
    void Start(bool counterTime) noexcept;

    // Fills the stamp's time; the local time is given back in either case.
    SYSTEMTIME Stamp(scLineStamp& stamp) const noexcept;

  private:
    void StampSinceStart(scLineStamp& stamp) const noexcept;

    LARGE_INTEGER start_{};
    LARGE_INTEGER frequency_{}; // 0: local time
};

} // namespace tvut
