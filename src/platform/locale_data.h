// What the system knows of a locale: pictures of dates and times, names of months and weekdays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tvut {

enum class LocaleText : std::uint8_t {
    shortDate,
    longDate,
    time,
    shortTime,
    beforeNoon,
    afterNoon,
    digits,
    era, // of the calendar that is asked for
    month,
    monthGenitive,
    shortMonth,
    shortMonthGenitive,
    weekday, // from Monday on
    shortWeekday,
};

// A locale by its name, terminated; null is the user's. What the user has changed in the system's settings
// comes with the rest, or the locale's own values do.
struct scLocaleChoice {
    const char16_t* name;
    bool withUser;
};

constexpr std::size_t longestLocaleName = 84; // units, as the system has it
constexpr std::size_t longestLocaleText = 256;

// False when the system knows no such locale.
bool PlatformHasLocale(const scLocaleChoice& locale) noexcept;

// Writes a text, where there is room for the longest, and returns its length; 0 when there is none. Months
// and weekdays are asked for by their number, from 0 on, in the Gregorian calendar; the era by its
// calendar's.
std::size_t PlatformLocaleText(const scLocaleChoice& locale, LocaleText text, unsigned number,
                               std::span<char16_t, longestLocaleText> result) noexcept;

// The system's number of a locale's calendar. The last year that two digits stand for, as that calendar
// counts; 0 when the system does not say.
unsigned PlatformLocaleCalendar(const scLocaleChoice& locale) noexcept;
unsigned PlatformLastTwoDigitYear(const scLocaleChoice& locale, unsigned calendar) noexcept;

// A clock for what is asked again after a while; it starts anew at its end.
std::uint32_t PlatformMilliseconds() noexcept;

} // namespace tvut
