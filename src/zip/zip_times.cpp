// The calendar is computed; only the step between local time and UTC asks the system, by the rules of that
// date. A DOS time has years from 1980 to 2107 and two seconds as its unit: what lies outside becomes its
// first or last moment, and what lies between is rounded down, so that no file looks newer than it is.
#include "zip/zip_times.h"

#include "platform/time_zone.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace tvut {

namespace {

namespace chrono = std::chrono;

using Ticks = chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
constexpr chrono::sys_days firstDay{chrono::year{1601} / 1 / 1};
constexpr std::int64_t ticksPerSecond = Ticks::period::den;
constexpr std::int64_t unixStart = Ticks(chrono::sys_days{} - firstDay).count();

// The first and the last moment that DOS can write.
constexpr std::uint32_t dosFirst = 1u << 21 | 1u << 16;
constexpr std::uint32_t dosLast = 127u << 25 | 12u << 21 | 31u << 16 | 23u << 11 | 59u << 5 | 29u;

scDateTime DateOf(std::uint64_t time) {
    const Ticks ticks(static_cast<std::int64_t>(time & std::numeric_limits<std::int64_t>::max()));
    const auto days = chrono::floor<chrono::days>(ticks);
    const chrono::year_month_day date(firstDay + days);
    const chrono::hh_mm_ss clock(chrono::floor<chrono::seconds>(ticks - days));
    const auto part = [](auto value) { return static_cast<std::uint16_t>(value); };
    return {part(static_cast<int>(date.year())),
            part(static_cast<unsigned>(date.month())),
            0, // the day of the week does not matter to conversions
            part(static_cast<unsigned>(date.day())),
            part(clock.hours().count()),
            part(clock.minutes().count()),
            part(clock.seconds().count()),
            0};
}

std::optional<std::uint64_t> TimeOf(const scDateTime& date) {
    const auto day = chrono::year{date.year} / date.month / date.day;
    if (!day.ok() || date.hour > 23 || date.minute > 59 || date.second > 59)
        return {};
    const Ticks ticks = chrono::sys_days(day) - firstDay + chrono::hours(date.hour) +
                        chrono::minutes(date.minute) + chrono::seconds(date.second);
    return static_cast<std::uint64_t>(ticks.count());
}

constexpr std::uint32_t Bits(std::uint32_t number, unsigned at, unsigned count) {
    return number >> at & ((1u << count) - 1);
}

} // namespace

// Years that the date's 16 bits cannot hold are far from 2107, and so is what has no local time.
std::uint32_t UtilpDosTime(std::uint64_t time) {
    const std::uint64_t year2200 = static_cast<std::uint64_t>(Ticks(chrono::days(218'800)).count());
    const std::optional<scDateTime> local = PlatformUtcToLocal(DateOf(std::min(time, year2200)));
    if (!local || local->year < 1980)
        return dosFirst;
    if (local->year > 2107)
        return dosLast;
    return (local->year - 1980u) << 25 | std::uint32_t{local->month} << 21 | std::uint32_t{local->day} << 16 |
           std::uint32_t{local->hour} << 11 | std::uint32_t{local->minute} << 5 | local->second / 2u;
}

std::optional<std::uint64_t> UtilpFromDosTime(std::uint32_t dosTime) {
    const auto bits = [dosTime](unsigned at, unsigned count) {
        return static_cast<std::uint16_t>(Bits(dosTime, at, count));
    };
    const scDateTime local{static_cast<std::uint16_t>(1980 + bits(25, 7)),
                           bits(21, 4),
                           0,
                           bits(16, 5),
                           bits(11, 5),
                           bits(5, 6),
                           static_cast<std::uint16_t>(bits(0, 5) * 2),
                           0};
    if (!TimeOf(local)) // the system may take the 30th of February for a date
        return {};
    const std::optional<scDateTime> utc = PlatformLocalToUtc(local);
    return utc ? TimeOf(*utc) : std::nullopt;
}

bool UtilpHasUnixTime(std::uint64_t time) noexcept {
    const std::int64_t seconds = (static_cast<std::int64_t>(time) - unixStart) / ticksPerSecond;
    return seconds >= 0 && seconds <= std::numeric_limits<std::int32_t>::max();
}

std::uint32_t UtilpUnixTime(std::uint64_t time) noexcept {
    return static_cast<std::uint32_t>((static_cast<std::int64_t>(time) - unixStart) / ticksPerSecond);
}

std::uint64_t UtilpFromUnixTime(std::uint32_t seconds) noexcept {
    const std::int64_t signedSeconds = static_cast<std::int32_t>(seconds);
    return static_cast<std::uint64_t>(unixStart + signedSeconds * ticksPerSecond);
}

std::uint64_t UtilpUnwrappedTime(std::uint64_t time, std::uint32_t dosTime) noexcept {
    constexpr std::uint64_t span = (1ull << 32) * ticksPerSecond;
    const std::uint32_t dosYear = 1980 + Bits(dosTime, 25, 7);
    return time < static_cast<std::uint64_t>(unixStart) && dosYear >= 2038 ? time + span : time;
}

} // namespace tvut
