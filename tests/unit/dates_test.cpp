// Dates by pictures: every letter, every rule of leniency, what is refused; the way back for the locales of
// the native build, of which some have calendars that no system has by itself.
#include "locale/date_format.h"
#include "locale/date_parse.h"
#include "locale/kept_locales.h"
#include "support/cases.h"
#include "unit/date_calls.h"
#include "unit/native_locales.h"

#include <gtest/gtest.h>

#include <sstream>
#include <thread>

using namespace tvut;

namespace {

std::ostream& operator<<(std::ostream& out, const scDateTime& m) {
    return out << m.year << ' ' << m.month << ' ' << m.dayOfWeek << ' ' << m.day << ' ' << m.hour << ' '
               << m.minute << ' ' << m.second << ' ' << m.milliseconds;
}
std::string Shown(const std::optional<scDateTime>& moment) {
    std::ostringstream out;
    if (!moment)
        return "-";
    out << *moment;
    return out.str();
}

const scLocaleNames& Names(const std::u16string& locale) {
    static std::map<std::u16string, std::shared_ptr<const clsLocaleNames>> all;
    auto& names = all[locale];
    if (!names)
        names = std::make_shared<const clsLocaleNames>(scLocaleChoice{locale.c_str(), true});
    return names->Names();
}

scMomentWish WishOf(std::u16string_view letters, bool isExact) {
    const auto has = [&](char16_t letter) { return letters.find(letter) != letters.npos; };
    return {has(u'D'), has(u'T'), has(u'L'), has(u'S'), isExact};
}

TEST(DatePictures, HaveTheseLetters) {
    constexpr scDateTime october{2024, 10, 2, 15, 8, 9, 5, 67}, january{1989, 1, 6, 7, 0, 0, 0, 999};
    for (const scCaseRow& row : CaseRows("dates/pictures", 3)) {
        EXPECT_EQ(FormatBy(row[0], october, Names(u"en-US")), row[1]) << row.where;
        EXPECT_EQ(FormatBy(row[0], january, Names(u"ja-eras")), row[2]) << row.where;
    }
}

TEST(DateReading, TakesByRuleAndExactlyOnlyWhatIsWritten) {
    for (const scCaseRow& row : CaseRows("dates/lenient", 4)) {
        EXPECT_EQ(Shown(UtilpParseMoment(row[2], WishOf(row[1], false), Names(row[0]))), NarrowCase(row[3]))
            << row.where;
        EXPECT_EQ(Shown(UtilpParseMoment(row[2], WishOf(row[1], true), Names(row[0]))), "-") << row.where;
    }
}

TEST(DateReading, RefusesTheRest) {
    for (const scCaseRow& row : CaseRows("dates/refused", 4))
        EXPECT_EQ(Shown(UtilpParseMoment(row[2], WishOf(row[1], false), Names(row[0]))), "-") << row.where;
}

TEST(DateReading, GoesByACallersPictureAlone) {
    for (const scCaseRow& row : CaseRows("dates/by_picture", 5)) {
        const std::string expected = NarrowCase(row[3]);
        EXPECT_EQ(Shown(ParseBy(row[1], row[2], Names(row[0]), false)), expected) << row.where;
        EXPECT_EQ(Shown(ParseBy(row[1], row[2], Names(row[0]), true)), row[4] == u"=" ? expected : "-")
            << row.where;
    }
}

// All locales of the native build, in the years of their counts.
TEST(DateReading, ReadsWhatIsWritten) {
    for (const scCaseRow& row : CaseRows("locales", 17)) {
        const scLocaleNames& names = Names(row[0]);
        std::int32_t from = firstDay, to = lastDay;
        if (names.calendar == Calendar::taiwan)
            from = UtilpDayOf({1912, 1, 0, 1, 0, 0, 0, 0});
        if (names.calendar == Calendar::japanese) { // from the first era to the last short year of the last
            from = UtilpDayOf({1868, 9, 0, 8, 0, 0, 0, 0});
            to = UtilpDayOf({2117, 12, 0, 31, 0, 0, 0, 0});
        }
        for (std::int32_t day = from; day <= to; day += 1999) {
            scDateTime moment = UtilpDateOf(day);
            moment.hour = static_cast<std::uint16_t>((day - firstDay) % 24);
            for (const LocalePicture picture : {LocalePicture::shortDate, LocalePicture::longDate}) {
                const std::u16string text = FormatBy(names.Picture(picture), moment, names) + u" " +
                                            FormatBy(names.Picture(LocalePicture::time), moment, names);
                const bool isLong = picture == LocalePicture::longDate;
                for (const bool isExact : {false, true})
                    ASSERT_EQ(Shown(UtilpParseMoment(text, {true, true, isLong, false, isExact}, names)),
                              Shown(moment))
                        << NarrowCase(row[0]) << ' ' << testing::PrintToString(text);
            }
        }
    }
}

// A picture that is cut off anywhere is one still; what it gives is read as a moment that gives it.
TEST(DatePictures, AreOnesWhereverTheyEnd) {
    const scLocaleNames& names = Names(u"fr-CA");
    for (const scCaseRow& row : CaseRows("dates/by_picture", 5))
        for (std::size_t length = 0; length <= row[1].size(); ++length) {
            const scOwnPicture own(row[1].substr(0, length), names);
            const std::u16string text = FormatBy(own.picture, UtilpDateOf(45000), names);
            const bool isFull = own.picture.HasDate() == own.picture.SaysDate() &&
                                own.picture.HasTime() == own.picture.SaysTime();
            const auto read = ParseBy(row[1].substr(0, length), text, names, true);
            if (read && isFull) {
                EXPECT_EQ(FormatBy(own.picture, *read, names), text) << testing::PrintToString(row[1]);
            }
        }
}

// Numbers that touch in a picture of the longest: counted steps, whatever the text.
TEST(DateReading, OfManyWaysEnds) {
    std::u16string picture, text(longestMomentText, u'1');
    while (picture.size() + 3 <= longestPicture)
        picture += u"dMy";
    EXPECT_EQ(Shown(ParseBy(picture, text, Names(u"en-US"), false)), "-");
    const std::string read = Shown(ParseBy(picture, text.substr(0, 255), Names(u"en-US"), true));
    EXPECT_TRUE(read == "-" || read == "2001 1 1 1 0 0 0 0") << read; // too many ways, or right
}

TEST(KeptLocales, AreEightAndAskedAgainWhereTheUserMayChangeThem) {
    const auto asked = [](const char16_t* name, bool withUser = true) {
        const unsigned before = NativeLocalesAsked();
        EXPECT_NE(UtilpLocale({name, withUser}), nullptr);
        return NativeLocalesAsked() - before;
    };
    SetNativeMilliseconds(0xFFFFFFF0);
    const char16_t* const nine[] = {u"en-US", u"de-DE", u"ru-RU", u"pt-BR", u"eu-ES",
                                    u"hu-HU", u"ja-JP", u"zh-CN", u"ko-KR"};
    for (const char16_t* name : nine)
        EXPECT_EQ(asked(name), 1u);
    EXPECT_EQ(asked(nine[8]), 0u);
    EXPECT_EQ(asked(nine[1]), 0u);
    EXPECT_EQ(asked(nine[0]), 1u); // the ninth took its place
    EXPECT_EQ(asked(nullptr), 1u);
    EXPECT_EQ(asked(u"fr-CA", false), 1u);
    SetNativeMilliseconds(0xFFFFFFF0 + 999); // around the clock's end
    EXPECT_EQ(asked(nullptr), 0u);
    SetNativeMilliseconds(0xFFFFFFF0 + 1000);
    EXPECT_EQ(asked(nullptr), 1u);
    EXPECT_EQ(asked(u"fr-CA", false), 0u);
    EXPECT_EQ(UtilpLocale({u"xx-XX", true}), nullptr);
    EXPECT_EQ(UtilpLocale({std::u16string(100, u'x').c_str(), true}), nullptr);
}

TEST(KeptLocales, AreSmall) {
    for (const scCaseRow& row : CaseRows("locales", 17))
        EXPECT_LE(clsLocaleNames({row[0].c_str(), true}).Bytes(), 1024 * sizeof(void*)) << row.where;
}

TEST(KeptLocales, AreForAllThreadsAtOnce) {
    const auto rows = CaseRows("locales", 17);
    std::vector<std::jthread> threads;
    for (std::size_t step = 1; step <= 4; ++step)
        threads.emplace_back([&rows, step] {
            for (std::size_t turn = 0; turn < 300; ++turn) {
                const scCaseRow& row = rows[turn * step % rows.size()];
                const auto kept = UtilpLocale({row[0].c_str(), true});
                EXPECT_EQ(kept->Names().Months(MonthForm::full)[0].text,
                          row[11].substr(0, row[11].find(u'|')));
            }
        });
}

// ---- The calendar -----------------------------------------------------------------------------------

TEST(Calendar, HasEveryDay) {
    scDateTime before = UtilpDateOf(firstDay - 1);
    for (std::int32_t day = firstDay; day <= lastDay; ++day) {
        const scDateTime date = UtilpDateOf(day);
        ASSERT_TRUE(UtilpIsDate(date));
        ASSERT_EQ(UtilpDayOf(date), day);
        ASSERT_EQ(date.dayOfWeek, (before.dayOfWeek + 1) % 7);
        ASSERT_TRUE(date.day == before.day + 1 || date.day == 1);
        before = date;
    }
    EXPECT_EQ(Shown(UtilpDateOf(firstDay)), "100 1 5 1 0 0 0 0");
    EXPECT_EQ(Shown(UtilpDateOf(lastDay)), "9999 12 5 31 0 0 0 0");
}

TEST(OleDates, RoundToMillisecondsAndCarry) {
    constexpr double ms = 1.0 / 86'400'000;
    const struct {
        double date;
        const char* moment;
    } rows[] = {
        {0, "1899 12 6 30 0 0 0 0"},
        {-0.0, "1899 12 6 30 0 0 0 0"},
        {0.25, "1899 12 6 30 6 0 0 0"},
        {-0.25, "1899 12 6 30 6 0 0 0"},
        {-1.25, "1899 12 5 29 6 0 0 0"},
        {1.5 * ms, "1899 12 6 30 0 0 0 2"},
        {0.4999 * ms, "1899 12 6 30 0 0 0 0"},
        {1 - 0.4 * ms, "1899 12 0 31 0 0 0 0"},
        {-1 - (1 - 0.4 * ms), "1899 12 6 30 0 0 0 0"},
        {-657434, "100 1 5 1 0 0 0 0"},
        {-657434.75, "100 1 5 1 18 0 0 0"},
        {-657435, "-"},
        {2958465.5, "9999 12 5 31 12 0 0 0"},
        {2958466 - 0.2 * ms, "-"},
        {2958466, "-"},
        {std::numeric_limits<double>::quiet_NaN(), "-"},
        {std::numeric_limits<double>::infinity(), "-"},
        {-1e300, "-"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Shown(UtilpFromOleDate(row.date)), row.moment) << row.date;
    for (std::int32_t day = firstDay; day <= lastDay; day += 997)
        for (const int second : {0, 1, 59}) {
            scDateTime moment = UtilpDateOf(day);
            moment.hour = 23;
            moment.second = static_cast<std::uint16_t>(second);
            moment.milliseconds = 999;
            ASSERT_EQ(Shown(UtilpFromOleDate(UtilpToOleDate(moment))), Shown(moment));
        }
    EXPECT_EQ(UtilpToOleDate({0, 0, 0, 0, 6, 0, 0, 0}), 0.25);
}

} // namespace
