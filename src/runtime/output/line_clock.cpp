#include "runtime/output/line_clock.h"

namespace tvut {

void clsLineClock::Start(bool counterTime) noexcept {
    if (counterTime && QueryPerformanceFrequency(&frequency_))
        QueryPerformanceCounter(&start_);
}

SYSTEMTIME clsLineClock::Stamp(scLineStamp& stamp) const noexcept {
    SYSTEMTIME now;
    GetLocalTime(&now);
    if (frequency_.QuadPart != 0) {
        StampSinceStart(stamp);
        return now;
    }
    stamp.hour = now.wHour;
    stamp.minute = now.wMinute;
    stamp.second = now.wSecond;
    stamp.millisecond = now.wMilliseconds;
    return now;
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
