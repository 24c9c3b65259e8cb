// A text may say one thing twice, as the hour of 12 and of 24 or the weekday and the date. All that was said
// must fit together: whatever contradicts makes the text none that can be read, and nothing is corrected.
// What a Japanese year is counted from is decided last, because the era may be said after it.
#include "locale/said_values.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::int32_t mostYear = 20000; // beyond what any calendar counts

// The year that ends in two digits, of the hundred years up to the last.
std::int32_t FullYear(std::int32_t lastDigits, std::int32_t last) {
    return last - ((last - lastDigits) % 100 + 100) % 100;
}

std::uint16_t Word(std::int32_t value) {
    return static_cast<std::uint16_t>(value);
}

bool HasField(const scMatchJob& job, PictureField field) {
    return std::ranges::any_of(job.parts, [&](const scPicturePart* part) { return part->field == field; });
}

// The hour of 24 that a number is; -1 when it is none. A number that no mark goes with in formatting may be
// one of 24 all the same.
std::int32_t FullHour(std::int32_t hour, std::int32_t mark, bool mayBeOf24) {
    if (mark < 0)
        return hour < 24 ? hour : -1;
    if (hour >= 1 && hour <= 12)
        return hour % 12 + 12 * mark;
    return mayBeOf24 && hour < 24 && hour / 12 == mark ? hour : -1;
}

} // namespace

bool clsSaidValues::SayYear(std::int32_t year, unsigned digits, const scMatchJob& job) {
    // Years of an era are short, and full all the same; which they are of is known in the end.
    if (job.calendar != Calendar::japanese && digits <= 2)
        year = FullYear(year, job.names.lastTwoDigitYear);
    values_[static_cast<std::size_t>(Value::yearDigits)] =
        static_cast<std::int16_t>(std::max(Get(Value::yearDigits), static_cast<std::int32_t>(digits)));
    return year >= 0 && year < mostYear && Say(Value::year, year);
}

std::int32_t clsSaidValues::GregorianYear(const scMatchJob& job) const {
    const std::int32_t year = Get(Value::year);
    if (job.calendar != Calendar::japanese)
        return UtilpGregorianYear(job.calendar, year, 0);
    if (Has(Value::era))
        return UtilpGregorianYear(job.calendar, year, Get(Value::era));
    return Get(Value::yearDigits) <= 2 ? FullYear(year, job.names.lastTwoDigitYear) : year;
}

bool clsSaidValues::SetDate(const scMatchJob& job, scReading& reading) const {
    scDateTime& moment = reading.moment;
    reading.hasDate = Has(Value::year) && Has(Value::month);
    const std::int32_t year = Has(Value::year) ? GregorianYear(job) : 2000; // which has all days
    if (year < 0 || year > 9999)
        return false;
    moment.year = Word(year);
    moment.month = Word(Has(Value::month) ? Get(Value::month) : 1);
    moment.day = Word(Has(Value::day) ? Get(Value::day) : 1);
    if (!UtilpIsDate(moment))
        return false;
    moment.dayOfWeek = UtilpDateOf(UtilpDayOf(moment)).dayOfWeek;
    if (Has(Value::weekday) && !reading.hasDate)
        moment.dayOfWeek = Word(Get(Value::weekday));
    // Nothing contradicts it where no day is said.
    if (Has(Value::weekday) && Has(Value::day) && Get(Value::weekday) != moment.dayOfWeek)
        return false;
    // An era's year must lie within it.
    return !reading.hasDate || !Has(Value::era) ||
           UtilpCountYear(job.calendar, moment).era == Get(Value::era);
}

bool clsSaidValues::SetHour(const scMatchJob& job, scDateTime& moment) const {
    const std::int32_t mark = Get(Value::mark);
    std::int32_t hour = -1;
    if (Has(Value::hour24)) {
        hour = FullHour(Get(Value::hour24), mark, mark >= 0 && HasField(job, PictureField::mark));
        if (hour < 0)
            return false;
    }
    if (Has(Value::hour12)) {
        const std::int32_t said = Get(Value::hour12);
        if (hour >= 0 && said != hour && said != (hour + 11) % 12 + 1)
            return false;
        hour = hour >= 0 ? hour : FullHour(said, mark, false);
    }
    moment.hour = Word(std::max(hour, 0));
    return hour >= 0 || !(Has(Value::hour12) || Has(Value::hour24));
}

bool clsSaidValues::SetTime(const scMatchJob& job, scReading& reading) const {
    scDateTime& moment = reading.moment;
    reading.hasTime = Has(Value::hour12) || Has(Value::hour24);
    moment.minute = Word(std::max(Get(Value::minute), 0));
    moment.second = Word(std::max(Get(Value::second), 0));
    std::int32_t ms = 0; // the finest says all; coarser ones are cut off
    for (const auto& [value, unit] :
         {std::pair{Value::thousandths, 1}, {Value::hundredths, 10}, {Value::tenths, 100}}) {
        if (Has(value) && ms == 0)
            ms = Get(value) * unit;
        if (Has(value) && ms / unit != Get(value))
            return false;
    }
    moment.milliseconds = Word(ms);
    return SetHour(job, moment) && UtilpIsTime(moment);
}

std::optional<scReading> clsSaidValues::Reading(const scMatchJob& job) const {
    scReading reading{};
    if (!SetDate(job, reading) || !SetTime(job, reading))
        return {};
    return reading;
}

} // namespace tvut
