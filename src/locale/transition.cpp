// A zone states a change by month, weekday and occurrence (5 is the last one), or by a full date that holds
// for one year.
#include "locale/transition.h"

#include <algorithm>
#include <chrono>

namespace tvut {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr unsigned occurrenceLast = 5;

// The calendar repeats every 400 years, weekdays too; a year within the library's range stands for any.
std::chrono::year SameCalendar(std::uint16_t year) {
    return std::chrono::year{2000 + year % 400};
}

std::uint16_t DayOfRule(const scDateTime& rule, std::uint16_t year) {
    const auto month = SameCalendar(year) / std::chrono::month{rule.month};
    const std::chrono::weekday wanted{rule.dayOfWeek % 7u};
    sys_days found;
    if (rule.day == occurrenceLast)
        found = month / wanted[std::chrono::last];
    else
        found = sys_days(month / wanted[1]) + days(7 * (std::max<int>(rule.day, 1) - 1));
    return static_cast<std::uint16_t>(unsigned{std::chrono::year_month_day(found).day()});
}

} // namespace

scDateTime UtilpTransitionInYear(const scDateTime& rule, std::uint16_t year) noexcept {
    scDateTime date = rule;
    date.dayOfWeek = noDayOfWeek;
    date.milliseconds = 0;
    if (rule.month == 0)
        return date;
    date.year = year;
    if (rule.year == 0 && rule.month <= 12)
        date.day = DayOfRule(rule, year);
    return date;
}

} // namespace tvut
