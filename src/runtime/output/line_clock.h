// The time of lines: the local time, or the time since the clock was started.
#pragma once

#include "runtime/output/line_sink.h"

#include <windows.h>

namespace tvut {

class clsLineClock {
  public:
    // Counts from now on, where the performance counter is asked for.
    void Start(bool counterTime) noexcept;

    // Sets a line's local time, and the time that its stamp shows.
    void Stamp(scOutputLine& line) const noexcept;

  private:
    void StampSinceStart(scLineStamp& stamp) const noexcept;

    LARGE_INTEGER start_{};
    LARGE_INTEGER frequency_{}; // 0: local time
};

} // namespace tvut
