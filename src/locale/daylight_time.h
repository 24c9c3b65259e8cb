// When the machine's zone has daylight time in a year, in UTC.
#pragma once

#include "platform/time_zone.h"

namespace tvut {

// Both all zero where the zone has no daylight time; each of them where its change cannot be computed,
// because its rule names no date or the date is not in the system's range.
struct scDaylightSpan {
    scDateTime start{};
    scDateTime end{};
};

scDaylightSpan UtilpDaylightTimeInUtc(std::uint16_t year) noexcept;

} // namespace tvut
