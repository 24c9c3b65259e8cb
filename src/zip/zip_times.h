// Times of entries: 100-nanosecond intervals since 1601 in UTC, as the system's files have them, and the
// two other forms that archives use.
#pragma once

#include <cstdint>
#include <optional>

namespace tvut {

// 0 where a time is not known.
struct scZipTimes {
    std::uint64_t modified, accessed, created;
};

// DOS: local time by the rules of that date, in steps of two seconds, downwards; the year is kept within
// 1980 to 2107. None for a time that is no date.
std::uint32_t UtilpDosTime(std::uint64_t time);
std::optional<std::uint64_t> UtilpFromDosTime(std::uint32_t dosTime);

// Unix: seconds since 1970, signed, of 32 bits; whether a time fits, and the conversions.
bool UtilpHasUnixTime(std::uint64_t time) noexcept;
std::uint32_t UtilpUnixTime(std::uint64_t time) noexcept;
std::uint64_t UtilpFromUnixTime(std::uint32_t seconds) noexcept;

} // namespace tvut
