// All forms are read by one cursor that takes digits and signs from a text; the calendar has the last word.
#include "docinfo/dates.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

bool IsBlank(char16_t unit) {
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r') || unit == 0;
}
bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}
char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

bool IsLeap(unsigned year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

unsigned DaysOf(unsigned year, unsigned month) {
    constexpr unsigned days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeap(year) ? 29 : days[month - 1];
}

class clsCursor {
  public:
    explicit clsCursor(std::u16string_view text) : left_(text) {
        while (!left_.empty() && IsBlank(left_.back()))
            left_.remove_suffix(1);
        PassBlanks();
    }

    bool AtEnd() const { return left_.empty(); }
    char16_t Peek() const { return left_.empty() ? u'\0' : left_.front(); }
    bool Take(char16_t unit) {
        if (Peek() != unit || left_.empty())
            return false;
        left_.remove_prefix(1);
        return true;
    }
    bool TakeAny(std::u16string_view units) {
        return !left_.empty() && units.find(Peek()) != units.npos && Take(Peek());
    }
    bool Take(std::u16string_view word) {
        if (!left_.starts_with(word))
            return false;
        left_.remove_prefix(word.size());
        return true;
    }
    bool PassBlanks() {
        const std::size_t before = left_.size();
        while (!left_.empty() && IsBlank(left_.front()))
            left_.remove_prefix(1);
        return left_.size() != before;
    }

    // Takes from least to most digits. Returns how many, 0 when there are too few.
    unsigned Number(unsigned least, unsigned most, unsigned& number) {
        unsigned count = 0, value = 0;
        for (; count < most && count < left_.size() && IsDigit(left_[count]); ++count)
            value = value * 10 + (left_[count] - u'0');
        if (count < least)
            return 0;
        left_.remove_prefix(count);
        number = value;
        return count;
    }
    bool Number(unsigned digits, unsigned& number) { return Number(digits, digits, number) != 0; }
    unsigned DigitCount() const {
        return static_cast<unsigned>(std::ranges::find_if_not(left_, IsDigit) - left_.begin());
    }

    std::u16string_view Letters() {
        std::size_t count = 0;
        while (count < left_.size() && Lower(left_[count]) >= u'a' && Lower(left_[count]) <= u'z')
            ++count;
        const std::u16string_view word = left_.substr(0, count);
        left_.remove_prefix(count);
        return word;
    }

    // White space and comments in parentheses, one in another.
    void PassComments() {
        for (PassBlanks(); Peek() == u'('; PassBlanks()) {
            int depth = 0;
            do {
                depth += Peek() == u'(' ? 1 : Peek() == u')' ? -1 : 0;
                left_.remove_prefix(Peek() == u'\\' && left_.size() > 1 ? 2 : 1);
            } while (depth > 0 && !left_.empty());
        }
    }

  private:
    std::u16string_view left_;
};

// A date that the calendar has; a leap second counts as the one before.
std::optional<scDocDate> Checked(scDocDate date) {
    const bool isDay = date.year >= 1 && date.year <= 9999 && date.month >= 1 && date.month <= 12 &&
                       date.day >= 1 && date.day <= DaysOf(date.year, date.month);
    const bool isTime = date.hour < 24 && date.minute < 60 && date.second <= 60;
    const bool isZone = date.offset > -24 * 60 && date.offset < 24 * 60;
    if (!isDay || !isTime || !isZone)
        return {};
    date.second = std::min(date.second, 59u);
    return date;
}

void SetOffset(scDocDate& date, bool isWest, unsigned hours, unsigned minutes) {
    date.zone = scDocDate::Zone::offset;
    const auto offset = static_cast<int>(minutes < 60 ? hours * 60 + minutes : 24 * 60);
    date.offset = isWest ? -offset : offset;
}

// Z, or +hh, +hhmm, +hh:mm. False for anything else but the end.
bool TakeIsoZone(clsCursor& cursor, scDocDate& date) {
    if (cursor.AtEnd())
        return true;
    if (cursor.TakeAny(u"Zz")) {
        date.zone = scDocDate::Zone::utc;
        return cursor.AtEnd();
    }
    const bool isWest = cursor.TakeAny(u"-\u2212");
    unsigned hours = 0, minutes = 0;
    if ((!isWest && !cursor.Take(u'+')) || !cursor.Number(2, hours))
        return false;
    cursor.Take(u':');
    if (!cursor.AtEnd() && !cursor.Number(2, minutes))
        return false;
    SetOffset(date, isWest, hours, minutes);
    return cursor.AtEnd();
}

// hh:mm, hh:mm:ss, hhmm, hhmmss, with a fraction.
bool TakeIsoTime(clsCursor& cursor, scDocDate& date) {
    if (!cursor.Number(2, date.hour))
        return false;
    const bool hasColons = cursor.Take(u':');
    if (!cursor.Number(2, date.minute))
        return false;
    date.hasTime = true;
    if (hasColons ? cursor.Take(u':') : IsDigit(cursor.Peek())) {
        if (!cursor.Number(2, date.second))
            return false;
        unsigned fraction = 0;
        if (cursor.TakeAny(u".,") && cursor.Number(1, 9, fraction) == 0)
            return false;
        while (IsDigit(cursor.Peek()))
            cursor.Take(cursor.Peek());
    }
    cursor.PassBlanks();
    return true;
}

constexpr std::u16string_view monthNames = u"janfebmaraprmayjunjulaugsepoctnovdec";

bool TakeMonthName(clsCursor& cursor, unsigned& month) {
    const std::u16string_view word = cursor.Letters();
    if (word.size() < 3)
        return false;
    const char16_t name[] = {Lower(word[0]), Lower(word[1]), Lower(word[2])};
    const std::size_t at = monthNames.find(std::u16string_view(name, 3));
    month = static_cast<unsigned>(at / 3 + 1);
    return at != monthNames.npos && at % 3 == 0;
}

struct scZoneName {
    std::u16string_view name;
    int hours;
};
constexpr scZoneName zoneNames[] = {{u"ut", 0},   {u"gmt", 0},  {u"utc", 0},  {u"est", -5},
                                    {u"edt", -4}, {u"cst", -6}, {u"cdt", -5}, {u"mst", -7},
                                    {u"mdt", -6}, {u"pst", -8}, {u"pdt", -7}};

// RFC 5322, 4.3: a zone that is not known by its name, the military letters among them, says nothing.
void TakeZoneName(clsCursor& cursor, scDocDate& date) {
    const std::u16string_view word = cursor.Letters();
    if (word == u"Z" || word == u"z")
        date.zone = scDocDate::Zone::utc;
    for (const scZoneName& zone : zoneNames) {
        if (std::ranges::equal(word, zone.name, [](char16_t a, char16_t b) { return Lower(a) == b; })) {
            date.zone = scDocDate::Zone::offset;
            date.offset = zone.hours * 60;
        }
    }
}

// -0000 says that the time is UTC and the place is unknown.
bool TakeMailZone(clsCursor& cursor, scDocDate& date) {
    const char16_t sign = cursor.Peek();
    if (!cursor.TakeAny(u"+-")) {
        TakeZoneName(cursor, date);
        return true;
    }
    unsigned hours = 0, minutes = 0;
    if (!cursor.Number(2, hours) || !cursor.Number(2, minutes))
        return false;
    if (sign == u'-' && hours == 0 && minutes == 0)
        date.zone = scDocDate::Zone::utc;
    else
        SetOffset(date, sign == u'-', hours, minutes);
    return true;
}

bool TakeMailTime(clsCursor& cursor, scDocDate& date) {
    if (cursor.Number(1, 2, date.hour) == 0 || (!cursor.Take(u':') && !cursor.Take(u'.')) ||
        !cursor.Number(2, date.minute))
        return false;
    date.hasTime = true;
    if ((cursor.Take(u':') || cursor.Take(u'.')) && !cursor.Number(2, date.second))
        return false;
    cursor.PassComments();
    return TakeMailZone(cursor, date);
}

// Two digits are 1950 to 2049, three a year since 1900.
unsigned FullYear(unsigned year, unsigned digits) {
    if (digits == 2)
        return year < 50 ? year + 2000 : year + 1900;
    return digits == 3 ? year + 1900 : year;
}

} // namespace

std::optional<scDocDate> UtilpReadIsoDate(std::u16string_view text) noexcept {
    clsCursor cursor(text);
    scDocDate date;
    const bool isBasic = cursor.DigitCount() == 8;
    if (!cursor.Number(4, date.year))
        return {};
    if (isBasic ? !cursor.Number(2, date.month) || !cursor.Number(2, date.day)
                : cursor.Take(u'-') &&
                      (!cursor.Number(2, date.month) || (cursor.Take(u'-') && !cursor.Number(2, date.day))))
        return {};
    if (cursor.AtEnd())
        return Checked(date);
    if (!cursor.TakeAny(u"Tt") && !cursor.PassBlanks())
        return TakeIsoZone(cursor, date)
                   ? (date.zone = scDocDate::Zone::unknown, date.offset = 0, Checked(date))
                   : std::nullopt;
    return TakeIsoTime(cursor, date) && TakeIsoZone(cursor, date) ? Checked(date) : std::nullopt;
}

std::optional<scDocDate> UtilpReadPdfDate(std::u16string_view text) noexcept {
    clsCursor cursor(text);
    cursor.Take(u"D:");
    scDocDate date;
    if (!cursor.Number(4, date.year))
        return {};
    if (cursor.Number(2, date.month) && cursor.Number(2, date.day) && cursor.Number(2, date.hour)) {
        date.hasTime = true;
        if (cursor.Number(2, date.minute))
            cursor.Number(2, date.second);
    }
    const bool isWest = cursor.Peek() == u'-';
    if (cursor.TakeAny(u"Zz")) {
        date.zone = scDocDate::Zone::utc; // what may follow is 00'00'
    } else if (cursor.TakeAny(u"+-")) {
        unsigned hours = 0, minutes = 0;
        if (!cursor.Number(2, hours))
            return {};
        cursor.TakeAny(u"':");
        cursor.Number(2, minutes);
        SetOffset(date, isWest, hours, minutes);
    } else if (!cursor.AtEnd()) {
        return {};
    }
    return Checked(date);
}

std::optional<scDocDate> UtilpReadMailDate(std::u16string_view text) noexcept {
    clsCursor cursor(text);
    cursor.PassComments();
    if (!IsDigit(cursor.Peek())) { // the day's name
        cursor.Letters();
        cursor.PassComments();
        cursor.Take(u',');
        cursor.PassComments();
    }
    scDocDate date;
    if (cursor.Number(1, 2, date.day) == 0)
        return {};
    cursor.PassComments();
    cursor.Take(u'-');
    if (!TakeMonthName(cursor, date.month))
        return {};
    cursor.PassComments();
    cursor.Take(u'-');
    const unsigned digits = cursor.Number(2, 4, date.year);
    if (digits == 0)
        return {};
    date.year = FullYear(date.year, digits);
    cursor.PassComments();
    if (cursor.AtEnd())
        return Checked(date);
    return TakeMailTime(cursor, date) ? Checked(date) : std::nullopt;
}

std::optional<scDocDate> UtilpReadTiffDate(std::u16string_view text) noexcept {
    clsCursor cursor(text);
    scDocDate date;
    if (!cursor.Number(4, date.year) || !cursor.TakeAny(u":-/") || !cursor.Number(2, date.month) ||
        !cursor.TakeAny(u":-/") || !cursor.Number(2, date.day))
        return {};
    if (cursor.AtEnd())
        return Checked(date);
    if (!cursor.PassBlanks() || !TakeIsoTime(cursor, date) || !TakeIsoZone(cursor, date))
        return {};
    return Checked(date);
}

std::optional<scDocDate> UtilpReadAnyDate(std::u16string_view text) noexcept {
    for (const auto read : {UtilpReadIsoDate, UtilpReadPdfDate, UtilpReadMailDate, UtilpReadTiffDate}) {
        if (const std::optional<scDocDate> date = read(text))
            return date;
    }
    return {};
}

// Days are counted from 1 March of the year 0, so that a leap day is the last of its year.
std::optional<scDocDate> UtilpDateOfFileTime(std::uint64_t time) noexcept {
    constexpr std::uint64_t ticksPerSecond = 10'000'000, secondsPerDay = 86400, daysBefore1601 = 584'694;
    if (time == 0 || time == UINT64_MAX)
        return {};
    const std::uint64_t seconds = time / ticksPerSecond;
    const std::uint64_t days = seconds / secondsPerDay + daysBefore1601;
    const auto era = static_cast<unsigned>(days / 146097), dayOfEra = static_cast<unsigned>(days % 146097);
    const unsigned yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned shifted = (5 * dayOfYear + 2) / 153; // months since March
    const auto second = static_cast<unsigned>(seconds % secondsPerDay);
    scDocDate date;
    date.month = shifted < 10 ? shifted + 3 : shifted - 9;
    date.year = era * 400 + yearOfEra + (date.month <= 2 ? 1 : 0);
    date.day = dayOfYear - (153 * shifted + 2) / 5 + 1;
    date.hasTime = true;
    date.hour = second / 3600;
    date.minute = second / 60 % 60;
    date.second = second % 60;
    date.zone = scDocDate::Zone::utc;
    return Checked(date);
}

std::optional<scDocDate> UtilpDateOfParts(unsigned year, unsigned month, unsigned day, int hour,
                                          unsigned minute, unsigned second) noexcept {
    scDocDate date;
    date.year = year;
    date.month = month;
    date.day = day;
    date.hasTime = hour >= 0;
    if (date.hasTime) {
        date.hour = static_cast<unsigned>(hour);
        date.minute = minute;
        date.second = second;
    }
    return Checked(date);
}

std::u16string UtilpDateText(const scDocDate& date) {
    std::u16string text;
    const auto put = [&](unsigned number, unsigned divisor) {
        for (; divisor != 0; divisor /= 10)
            text += static_cast<char16_t>(u'0' + number / divisor % 10);
    };
    const auto putAfter = [&](char16_t sign, unsigned number) {
        text += sign;
        put(number, 10);
    };
    put(date.year, 1000);
    putAfter(u'-', date.month);
    putAfter(u'-', date.day);
    if (!date.hasTime)
        return text;
    putAfter(u'T', date.hour);
    putAfter(u':', date.minute);
    putAfter(u':', date.second);
    if (date.zone == scDocDate::Zone::utc)
        text += u'Z';
    if (date.zone == scDocDate::Zone::offset) {
        const auto offset = static_cast<unsigned>(date.offset < 0 ? -date.offset : date.offset);
        putAfter(date.offset < 0 ? u'-' : u'+', offset / 60);
        putAfter(u':', offset % 60);
    }
    return text;
}

} // namespace tvut
