// Viewers get the local time in any case; the counter's time is for the stamp alone. Seconds are taken out
// of the ticks before these are multiplied, so that nothing overflows however long the process runs.
#include "runtime/output/line_clock.h"

#include <bit>

namespace tvut {

void clsLineClock::Start(bool counterTime) noexcept {
    if (counterTime && QueryPerformanceFrequency(&frequency_))
        QueryPerformanceCounter(&start_);
}

void clsLineClock::Stamp(scOutputLine& line) const noexcept {
    SYSTEMTIME now;
    GetLocalTime(&now);
    line.time = std::bit_cast<scDateTime>(now);
    if (frequency_.QuadPart != 0) {
        StampSinceStart(line.stamp);
        return;
    }
    line.stamp.hour = now.wHour;
    line.stamp.minute = now.wMinute;
    line.stamp.second = now.wSecond;
    line.stamp.millisecond = now.wMilliseconds;
}

void clsLineClock::StampSinceStart(scLineStamp& stamp) const noexcept {
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    const auto ticks = static_cast<std::uint64_t>(now.QuadPart - start_.QuadPart);
    const auto frequency = static_cast<std::uint64_t>(frequency_.QuadPart);
    const std::uint64_t seconds = ticks / frequency;
    stamp.sinceStart = true;
    stamp.minute = static_cast<std::uint32_t>(seconds / 60 % 60);
    stamp.second = static_cast<std::uint32_t>(seconds % 60);
    stamp.millisecond = static_cast<std::uint32_t>(ticks % frequency * 1000 / frequency);
}

} // namespace tvut
