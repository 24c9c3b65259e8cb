// Character sets against their plain definition; days of clock changes against a calendar walked day by day.
#include "locale/charset.h"
#include "locale/transition.h"
#include "support/cases.h"
#include "unit/charset_reference.h"

#include <gtest/gtest.h>

#include <string>

using namespace tvut;

namespace {

TEST(Charset, OfTexts) {
    for (const scCaseRow& row : CaseRows("charsets", 3)) {
        EXPECT_EQ(std::to_string(UtilpLikelyCharset(row[0].c_str(), 1252)), NarrowCase(row[1])) << row.where;
        EXPECT_EQ(std::to_string(UtilpLikelyCharset(row[0].c_str(), 936)), NarrowCase(row[2])) << row.where;
    }
}

TEST(Charset, OfEveryUnitAloneAndBehindALetter) {
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

TEST(Transition, KeepsToUnusualRules) {
    const struct {
        const char* what;
        scDateTime rule;
        std::uint16_t year;
        scDateTime expected;
    } rows[] = {
        {"the second Sunday of a March that begins with one",
         Rule(3, 0, 2),
         2015,
         {2015, 3, noDayOfWeek, 8, 2, 30, 15, 0}},
        {"no transition", {7, 0, 1, 2, 3, 4, 5, 6}, 2018, {7, 0, noDayOfWeek, 2, 3, 4, 5, 0}},
        {"a fixed date", {2026, 10, 3, 4, 2, 0, 0, 0}, 1990, {1990, 10, noDayOfWeek, 4, 2, 0, 0, 0}},
        {"a fixed 29 February in a year without one",
         {2024, 2, 0, 29, 2, 0, 0, 0},
         2023,
         {2023, 2, noDayOfWeek, 29, 2, 0, 0, 0}},
        {"the sixth Sunday of April 2018: 6 May",
         Rule(4, 0, 6),
         2018,
         {2018, 4, noDayOfWeek, 6, 2, 30, 15, 0}},
        {"the ninth Sunday of February 2018: 1 April",
         Rule(2, 0, 9),
         2018,
         {2018, 2, noDayOfWeek, 1, 2, 30, 15, 0}},
        {"the sixth Monday of December 2018: 7 January",
         Rule(12, 1, 6),
         2018,
         {2018, 12, noDayOfWeek, 7, 2, 30, 15, 0}},
        {"a weekday counted on: 8 is Monday", Rule(12, 8, 1), 2018, {2018, 12, noDayOfWeek, 3, 2, 30, 15, 0}},
        {"a month there is not", Rule(13, 0, 2), 2018, {2018, 13, noDayOfWeek, 2, 2, 30, 15, 0}}};
    for (const auto& row : rows)
        EXPECT_EQ(UtilpTransitionInYear(row.rule, row.year), row.expected) << row.what;
}

} // namespace
