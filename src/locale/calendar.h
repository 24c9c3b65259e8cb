// Days and dates of the proleptic Gregorian calendar, OLE dates, and the calendars that number its years
// otherwise.
//
// A day is a number: of days since 30 December 1899, as OLE dates have it.
#pragma once

#include "platform/time_zone.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace tvut {

constexpr std::int32_t firstDay = -657434; // 1 January 0100
constexpr std::int32_t lastDay = 2958465;  // 31 December 9999

// Whether the date fields are a date of these years, and the time fields a time of day.
bool UtilpIsDate(const scDateTime& moment) noexcept;
bool UtilpIsTime(const scDateTime& moment) noexcept;

// The day of a date; the date of a day with its day of the week, midnight.
std::int32_t UtilpDayOf(const scDateTime& date) noexcept;
scDateTime UtilpDateOf(std::int32_t day) noexcept;

// A moment by its OLE date: whole days and, with the same sign whatever it counts from, the time of day.
// Rounded to milliseconds, halves up; none when there is no such day.
std::optional<scDateTime> UtilpFromOleDate(double dateTime) noexcept;

// The OLE date of a moment. A moment without a date, whose date fields are 0, is a fraction alone.
double UtilpToOleDate(const scDateTime& moment) noexcept;

// The calendars whose days and months are the Gregorian ones, by the system's numbers for them.
enum class Calendar : std::uint8_t { gregorian = 1, japanese = 3, taiwan = 4, korean = 5, thai = 7 };

// The one that a locale's calendar is treated as: Gregorian for those that count days otherwise.
Calendar UtilpCalendar(unsigned systemsNumber) noexcept;

constexpr int noEra = -1;
constexpr int firstJapaneseEra = 0;
constexpr int lastJapaneseEra = 4;

// A year as a calendar counts it. The era is a Japanese one by its number, 0 for the only one of another
// calendar, noEra for Gregorian years before the count begins.
struct scCountedYear {
    std::uint32_t year;
    int era;
};
scCountedYear UtilpCountYear(Calendar calendar, const scDateTime& date) noexcept;

// The Gregorian year of a counted one, out of any range perhaps.
std::int32_t UtilpGregorianYear(Calendar calendar, std::int32_t year, int era) noexcept;

// The text of a Japanese era.
std::u16string_view UtilpJapaneseEra(int era) noexcept;

} // namespace tvut
