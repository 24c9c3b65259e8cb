#include "locale/daylight_time.h"

#include "locale/transition.h"

namespace tvut {

namespace {

scDateTime InUtc(const scClockChange& change, std::uint16_t year) {
    return PlatformAddMinutes(UtilpTransitionInYear(change.date, year), change.minutesToUtc)
        .value_or(scDateTime{});
}

} // namespace

scDaylightSpan UtilpDaylightTimeInUtc(std::uint16_t year) noexcept {
    const auto zone = PlatformDaylightTime();
    if (!zone)
        return {};
    return {InUtc(zone->start, year), InUtc(zone->end, year)};
}

} // namespace tvut
