// Character sets against their plain definition; days of clock changes against a calendar walked day by day.
#include "locale/charset.h"
#include "locale/transition.h"
#include "support/cases.h"
#include "unit/charset_reference.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

using namespace tvut;

namespace {

TEST(Charset, OfTexts) {
    for (const scCaseRow& row : CaseRows("charsets", 3)) {
        EXPECT_EQ(std::to_string(UtilpLikelyCharset(row[0].c_str(), 1252)), NarrowCase(row[1])) << row.where;
        EXPECT_EQ(std::to_string(UtilpLikelyCharset(row[0].c_str(), 936)), NarrowCase(row[2])) << row.where;
    }
}

TEST(Charset, OfEveryUnitAloneAndAfterALetter) {
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
        for (const unsigned codePage : {949u, 1252u}) {
            for (const char16_t before : {u'a', u'\u03B1', u'\u3042'}) {
                const std::u16string text{before, static_cast<char16_t>(unit)};
                ASSERT_EQ(UtilpLikelyCharset(text.c_str() + 1, codePage),
                          ReferenceCharset(text.substr(1), codePage))
                    << unit;
                ASSERT_EQ(UtilpLikelyCharset(text.c_str(), codePage), ReferenceCharset(text, codePage))
                    << unit;
            }
        }
    }
}

// A calendar that knows nothing but the lengths of months, and that 1 January 2000 was a Saturday.
struct scWalkedCalendar {
    int year = 2000, month = 1, day = 1, weekday = 6;

    static int DaysIn(int y, int m) {
        if (m == 2)
            return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0 ? 29 : 28;
        return m == 4 || m == 6 || m == 9 || m == 11 ? 30 : 31;
    }
    void Next() {
        weekday = (weekday + 1) % 7;
        if (++day <= DaysIn(year, month))
            return;
        day = 1;
        year += month / 12;
        month = month % 12 + 1;
    }
};

scDateTime Rule(int month, int weekday, int occurrence) {
    const auto unit = [](int value) { return static_cast<std::uint16_t>(value); };
    return {0, unit(month), unit(weekday), unit(occurrence), 2, 30, 15, 999};
}

// 400 years, after which the calendar repeats: each weekday's occurrences counted as they come.
TEST(Transition, FindsEveryOccurrenceOfEveryWeekday) {
    for (scWalkedCalendar today; today.year < 2400; today.Next()) {
        const int occurrence = (today.day - 1) / 7 + 1;
        const bool isLast = today.day + 7 > scWalkedCalendar::DaysIn(today.year, today.month);
        const auto check = [&](int number) {
            for (const int century : {0, -2000, 40000}) {
                const auto year = static_cast<std::uint16_t>(today.year + century);
                const scDateTime expected{year,        static_cast<std::uint16_t>(today.month),
                                          noDayOfWeek, static_cast<std::uint16_t>(today.day),
                                          2,           30,
                                          15,          0};
                ASSERT_EQ(UtilpTransitionInYear(Rule(today.month, today.weekday, number), year), expected)
                    << today.year << '-' << today.month << '-' << today.day;
            }
        };
        if (occurrence == 1)
            check(0);
        if (occurrence < 5)
            check(occurrence);
        if (isLast)
            check(5);
    }
}

scDateTime DateOf(const std::u16string& column) {
    std::istringstream numbers(NarrowCase(column));
    scDateTime date{};
    numbers >> date.year >> date.month >> date.dayOfWeek >> date.day >> date.hour >> date.minute >>
        date.second >> date.milliseconds;
    return date;
}

TEST(Transition, KeepsToUnusualRules) {
    for (const scCaseRow& row : CaseRows("transitions", 4)) {
        const auto year = static_cast<std::uint16_t>(std::stoi(NarrowCase(row[1])));
        scDateTime expected = DateOf(row[2]);
        expected.dayOfWeek = noDayOfWeek;
        EXPECT_EQ(UtilpTransitionInYear(DateOf(row[0]), year), expected) << row.where;
    }
}

} // namespace
