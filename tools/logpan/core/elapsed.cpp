// Milliseconds between two days and clocks.
#include "elapsed.h"

#include "columns.h"

#include <chrono>

namespace tool::logpan {

namespace {

using std::chrono::milliseconds;
constexpr milliseconds day = std::chrono::hours{24};

milliseconds ClockOf(const scStamp& time) {
    using namespace std::chrono;
    return hours{time.hour} + minutes{time.minute} + seconds{time.second} + milliseconds{time.millisecond};
}

std::chrono::sys_days DayOf(const scStamp& time) {
    return std::chrono::year{time.year} / time.month / time.day;
}

milliseconds Between(const scStamp& before, const scStamp& time) {
    const milliseconds clocks = ClockOf(time) - ClockOf(before);
    if (IsDate(before) && IsDate(time))
        return DayOf(time) - DayOf(before) + clocks;
    return clocks < -day / 2 ? clocks + day : clocks;
}

} // namespace

std::wstring ElapsedText(const scLine& before, const scLine& line) {
    if (!IsClock(before.time) || !IsClock(line.time))
        return {};
    const auto elapsed = Between(before.time, line.time).count();
    const auto size = elapsed < 0 ? -elapsed : elapsed;
    const std::wstring fraction = std::to_wstring(size % 1000 + 1000);
    return (elapsed < 0 ? L"-" : L"+") + std::to_wstring(size / 1000) + L"." + fraction.substr(1);
}

} // namespace tool::logpan
