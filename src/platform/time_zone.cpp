// The system's own conversions and file times do the arithmetic. Dates go in and out by their layout, which
// is that of the system's structure.
#include "platform/time_zone.h"

#include <bit>
#include <windows.h>

namespace tvut {

namespace {

SYSTEMTIME ToSystem(const scDateTime& time) {
    return std::bit_cast<SYSTEMTIME>(time);
}
scDateTime FromSystem(const SYSTEMTIME& time) {
    return std::bit_cast<scDateTime>(time);
}

template <class Conversion>
std::optional<scDateTime> InMachineZone(const scDateTime& time, Conversion* conversion) {
    const SYSTEMTIME from = ToSystem(time);
    SYSTEMTIME to;
    if (!conversion(nullptr, &from, &to))
        return {};
    return FromSystem(to);
}

} // namespace

std::optional<scDaylightTime> PlatformDaylightTime() noexcept {
    TIME_ZONE_INFORMATION zone;
    const DWORD state = GetTimeZoneInformation(&zone);
    if (state == TIME_ZONE_ID_UNKNOWN || state == TIME_ZONE_ID_INVALID)
        return {};
    const std::int64_t bias = zone.Bias;
    return scDaylightTime{{FromSystem(zone.DaylightDate), bias},
                          {FromSystem(zone.StandardDate), bias + zone.DaylightBias}};
}

std::optional<scDateTime> PlatformLocalToUtc(const scDateTime& local) noexcept {
    return InMachineZone(local, TzSpecificLocalTimeToSystemTime);
}

std::optional<scDateTime> PlatformUtcToLocal(const scDateTime& utc) noexcept {
    return InMachineZone(utc, SystemTimeToTzSpecificLocalTime);
}

std::optional<scDateTime> PlatformAddMinutes(const scDateTime& moment, std::int64_t minutes) noexcept {
    constexpr std::int64_t ticksPerMinute = 600000000; // of 100 ns each
    SYSTEMTIME time = ToSystem(moment);
    FILETIME file;
    if (!SystemTimeToFileTime(&time, &file))
        return {};
    // Unsigned, so that what leaves the range wraps to where the system refuses it.
    const std::uint64_t ticks =
        std::bit_cast<std::uint64_t>(file) + static_cast<std::uint64_t>(minutes * ticksPerMinute);
    file = std::bit_cast<FILETIME>(ticks);
    if (!FileTimeToSystemTime(&file, &time))
        return {};
    return FromSystem(time);
}

} // namespace tvut
