// The machine's time zone, and moments in it.
#pragma once

#include <cstdint>
#include <optional>

namespace tvut {

// A date and time of day, laid out as the system has it. In the rule of a yearly change the year is 0 and
// the day counts the weekday's occurrences in the month.
struct scDateTime {
    std::uint16_t year, month, dayOfWeek, day, hour, minute, second, milliseconds;
    bool operator==(const scDateTime&) const = default;
};

constexpr std::uint16_t noDayOfWeek = 0xFFFF;

// When a zone changes its clocks, and how far they are from UTC before it does: minutes to be added to
// local time.
struct scClockChange {
    scDateTime date;
    std::int64_t minutesToUtc;
};

struct scDaylightTime {
    scClockChange start, end;
};

// The daylight time of the machine's zone by the rules in force today; none where there is none, or
// where the system does not tell.
std::optional<scDaylightTime> PlatformDaylightTime() noexcept;

// Conversions by the rules of the machine's zone; none for what is no date or not in the system's range.
std::optional<scDateTime> PlatformLocalToUtc(const scDateTime& local) noexcept;
std::optional<scDateTime> PlatformUtcToLocal(const scDateTime& utc) noexcept;

// A moment some minutes later, or earlier, with its day of the week; none as above.
std::optional<scDateTime> PlatformAddMinutes(const scDateTime& moment, std::int64_t minutes) noexcept;

} // namespace tvut
