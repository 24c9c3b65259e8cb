// The calendar of C++ does the arithmetic. Four calendars differ from it in the number of the year alone: by
// a constant, or by the day on which an era began.
#include "locale/calendar.h"

#include <array>
#include <chrono>
#include <cmath>

namespace tvut {

namespace {

using std::chrono::sys_days;

constexpr std::int32_t dayOf1970 = 25569;
constexpr std::uint32_t msPerDay = 86'400'000;

struct scEra {
    std::int32_t firstDay;
    std::int32_t yearBefore;
    std::u16string_view name;
};

constexpr std::int32_t Day(int year, unsigned month, unsigned day) {
    const sys_days days = std::chrono::year{year} / static_cast<int>(month) / static_cast<int>(day);
    return static_cast<std::int32_t>(days.time_since_epoch().count()) + dayOf1970;
}

constexpr std::array<scEra, 5> japaneseEras = {{
    {Day(1868, 9, 8), 1867, u"\u660E\u6CBB"},
    {Day(1912, 7, 30), 1911, u"\u5927\u6B63"},
    {Day(1926, 12, 25), 1925, u"\u662D\u548C"},
    {Day(1989, 1, 8), 1988, u"\u5E73\u6210"},
    {Day(2019, 5, 1), 2018, u"\u4EE4\u548C"},
}};

// What the calendar's years are ahead of the Gregorian ones.
constexpr std::int32_t YearsAhead(Calendar calendar) {
    switch (calendar) {
    case Calendar::thai:
        return 543;
    case Calendar::korean:
        return 2333;
    case Calendar::taiwan:
        return -1911;
    default:
        return 0;
    }
}

std::chrono::year_month_day Date(const scDateTime& moment) {
    return std::chrono::year{moment.year} / moment.month / moment.day;
}

std::uint32_t MsOfDay(const scDateTime& time) {
    return ((time.hour * 60u + time.minute) * 60u + time.second) * 1000u + time.milliseconds;
}

void SetTime(scDateTime& moment, std::uint32_t ms) {
    const auto word = [](std::uint32_t value) { return static_cast<std::uint16_t>(value); };
    moment.hour = word(ms / 3'600'000);
    moment.minute = word(ms / 60'000 % 60);
    moment.second = word(ms / 1000 % 60);
    moment.milliseconds = word(ms % 1000);
}

} // namespace

bool UtilpIsDate(const scDateTime& moment) noexcept {
    return moment.year >= 100 && moment.year <= 9999 && moment.month <= 12 && moment.day <= 31 &&
           Date(moment).ok();
}

bool UtilpIsTime(const scDateTime& moment) noexcept {
    return moment.hour < 24 && moment.minute < 60 && moment.second < 60 && moment.milliseconds < 1000;
}

std::int32_t UtilpDayOf(const scDateTime& date) noexcept {
    return Day(date.year, date.month, date.day);
}

scDateTime UtilpDateOf(std::int32_t day) noexcept {
    const sys_days days{std::chrono::days{day - dayOf1970}};
    const std::chrono::year_month_day date{days};
    const auto word = [](auto value) { return static_cast<std::uint16_t>(value); };
    return {word(int{date.year()}),
            word(unsigned{date.month()}),
            word(std::chrono::weekday{days}.c_encoding()),
            word(unsigned{date.day()}),
            0,
            0,
            0,
            0};
}

std::optional<scDateTime> UtilpFromOleDate(double dateTime) noexcept {
    if (!(dateTime > firstDay - 1 && dateTime < lastDay + 1)) // NaN compares as false
        return {};
    const double whole = std::trunc(dateTime);
    const double exact = std::abs(dateTime - whole) * msPerDay;
    auto day = static_cast<std::int32_t>(whole);
    auto ms = static_cast<std::uint32_t>(exact);
    ms += exact - ms >= 0.5 ? 1 : 0;
    if (ms == msPerDay) {
        ms = 0;
        ++day;
    }
    if (day < firstDay || day > lastDay)
        return {};
    scDateTime moment = UtilpDateOf(day);
    SetTime(moment, ms);
    return moment;
}

double UtilpToOleDate(const scDateTime& moment) noexcept {
    const std::int32_t day = moment.month == 0 ? 0 : UtilpDayOf(moment);
    const double fraction = static_cast<double>(MsOfDay(moment)) / msPerDay;
    return day < 0 ? day - fraction : day + fraction;
}

Calendar UtilpCalendar(unsigned systemsNumber) noexcept {
    for (const Calendar known : {Calendar::japanese, Calendar::taiwan, Calendar::korean, Calendar::thai})
        if (systemsNumber == static_cast<unsigned>(known))
            return known;
    return Calendar::gregorian;
}

scCountedYear UtilpCountYear(Calendar calendar, const scDateTime& date) noexcept {
    const std::int32_t year = date.year;
    if (calendar == Calendar::japanese) {
        const std::int32_t day = UtilpDayOf(date);
        for (int era = lastJapaneseEra; era >= firstJapaneseEra; --era) {
            const scEra& row = japaneseEras[static_cast<std::size_t>(era)];
            if (day >= row.firstDay)
                return {static_cast<std::uint32_t>(year - row.yearBefore), era};
        }
    }
    const std::int32_t counted = year + YearsAhead(calendar);
    if (counted < 1 || calendar == Calendar::japanese)
        return {date.year, noEra};
    return {static_cast<std::uint32_t>(counted), 0};
}

std::int32_t UtilpGregorianYear(Calendar calendar, std::int32_t year, int era) noexcept {
    if (era == noEra)
        return year;
    if (calendar == Calendar::japanese)
        return year + japaneseEras[static_cast<std::size_t>(era)].yearBefore;
    return year - YearsAhead(calendar);
}

std::u16string_view UtilpJapaneseEra(int era) noexcept {
    return japaneseEras[static_cast<std::size_t>(era)].name;
}

} // namespace tvut
