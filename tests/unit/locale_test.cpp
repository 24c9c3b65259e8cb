// Character sets against their plain definition; days of clock changes against the calendar of C++.
#include "locale/charset.h"
#include "locale/transition.h"
#include "support/cases.h"
#include "unit/charset_reference.h"

#include <gtest/gtest.h>

#include <chrono>
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

// 400 years, after which the calendar repeats.
TEST(Transition, FindsEveryOccurrenceOfEveryWeekday) {
    using namespace std::chrono;
    const auto word = [](auto value) { return static_cast<std::uint16_t>(value); };
    for (int year = 2000; year < 2400; ++year) {
        for (unsigned month = 1; month <= 12; ++month) {
            for (unsigned day = 0; day < 7; ++day) {
                for (unsigned number = 0; number <= 5; ++number) {
                    const auto in = std::chrono::year{year} / std::chrono::month{month};
                    const year_month_day date = number == 5
                                                    ? sys_days{in / weekday{day}[last]}
                                                    : sys_days{in / weekday{day}[std::max(number, 1u)]};
                    const scDateTime rule{0, word(month), word(day), word(number), 2, 30, 15, 999};
                    for (const int wanted : {year, year - 2000, year + 40000}) {
                        const scDateTime expected{
                            word(wanted), word(month), noDayOfWeek, word(unsigned{date.day()}), 2, 30, 15, 0};
                        ASSERT_EQ(UtilpTransitionInYear(rule, word(wanted)), expected)
                            << year << '-' << month << '-' << unsigned{date.day()};
                    }
                }
            }
        }
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
