// The locale family: character sets at every alignment, and daylight time by what the platform says of its
// zone.
//
// A process has its code page and time zone from its start, so ctest runs the program under several of both.
// On this platform the code page goes by LC_ALL, the zone by TZ. The system's conversions go by the
// rules that the zone has today for every year; GetTimeZoneInformation reports these as recurring rules, or
// as fixed dates in this year for a zone that no table of the system knows (Lord Howe's). A local time that
// is skipped counts as daylight time, one that there is twice as the first, in daylight time, too.
#include "support/cases.h"
#include "support/page_end.h"
#include "unit/charset_reference.h"

#include <tvut22/locale.h>
#include <tvut22/prof.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <random>
#include <string>
#include <vector>

static bool operator==(const SYSTEMTIME& a, const SYSTEMTIME& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}
static void PrintTo(const SYSTEMTIME& t, std::ostream* out) {
    *out << t.wYear << '-' << t.wMonth << '-' << t.wDay << " (" << t.wDayOfWeek << ") " << t.wHour << ':'
         << t.wMinute << ':' << t.wSecond << '.' << t.wMilliseconds;
}

namespace testing_prof {
namespace {

TEST(Charset, GoesByTheCodePageOfTheProcess) {
    const struct {
        const char* locale;
        UINT codePage;
        INT mixed;
    } rows[] = {{"ja_JP.UTF-8", 932, 128}, {"zh_CN.UTF-8", 936, 134}, {"ko_KR.UTF-8", 949, 129},
                {"zh_TW.UTF-8", 950, 136}, {"el_GR.UTF-8", 1253, 0},  {"C.UTF-8", 1252, 0}};
    const char* const locale = std::getenv("LC_ALL");
    const auto* const row = std::ranges::find_if(
        rows, [&](auto& r) { return r.locale == std::string_view(locale ? locale : ""); });
    ASSERT_NE(row, std::end(rows)) << "a locale that the table does not know";
    ASSERT_EQ(GetACP(), row->codePage);
    for (const UINT other : {0u, 932u, 1252u}) { // the A forms' code page is another matter
        if (other != 0)
            ProfSetOption(PROF_OPTION_CODE_PAGE, other);
        EXPECT_EQ(UtilGetLikelyCharsetFromString(L"\x6F22"), row->mixed);
        EXPECT_EQ(UtilGetLikelyCharsetFromString(L"\x03B1 \x0431"), row->mixed);
        EXPECT_EQ(UtilGetLikelyCharsetFromString(L"\x3072\x3089"), 128);
        EXPECT_EQ(UtilGetLikelyCharsetFromString(L"Latin"), 0);
        EXPECT_EQ(UtilGetLikelyCharsetFromString(L""), 0);
        EXPECT_EQ(UtilGetLikelyCharsetFromString(nullptr), 0);
    }
}

// Texts of two sorts of units, which end where memory does and begin anywhere, at odd addresses, too. Which
// sorts there are is shown by the unit test.
TEST(Charset, ReadsWholeTextsOfEveryLengthAndNothingAfter) {
    clsPageEnd page;
    std::mt19937 random(3);
    constexpr std::u16string_view sorts =
        u"a\u00E9\u036F\u03B1\u0431\u0530\u2014\u3042\u3001\u05D0\u1F00\uAC00\uFEFF";
    for (size_t length = 0; length <= 70; ++length)
        for (int time = 0; time < 60; ++time) {
            std::u16string text(length, sorts[random() % sorts.size()]);
            const char16_t other = sorts[random() % sorts.size()];
            std::ranges::replace_if(
                text, [&](char16_t) { return random() % 10 == 0; }, other);
            const int expected = tvut::ReferenceCharset(text, GetACP());
            for (const size_t after : {0u, 1u}) { // bytes
                char* const place = page.Last(2 * length + 2 + after);
                std::memcpy(place, text.c_str(), 2 * length + 2);
                ASSERT_EQ(UtilGetLikelyCharsetFromString(reinterpret_cast<wchar_t*>(place)), expected)
                    << testing::PrintToString(text);
            }
        }
}

using Moment = SYSTEMTIME;
constexpr Moment nothing{};

// With the day of the week, as all results have it.
Moment At(int year, int month, int day, int hour, int minute = 0, int seconds = 0) {
    const auto word = [](int value) { return static_cast<WORD>(value); };
    Moment moment{word(year), word(month), 0, word(day), word(hour), word(minute), 0, 0};
    FILETIME time;
    SystemTimeToFileTime(&moment, &time);
    const std::uint64_t ticks = (std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime) +
                                static_cast<std::uint64_t>(std::int64_t{seconds} * 10000000);
    time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    FileTimeToSystemTime(&time, &moment);
    return moment;
}

Moment Later(const Moment& m, int seconds) {
    return At(m.wYear, m.wMonth, m.wDay, m.wHour, m.wMinute, m.wSecond + seconds);
}

Moment ToLocal(Moment moment) {
    EXPECT_EQ(UtilLocConvertUTCTimeToLocalTime(&moment), S_OK);
    return moment;
}
Moment ToUtc(Moment moment) {
    EXPECT_EQ(UtilLocConvertLocalTimeToUTCTime(&moment), S_OK);
    return moment;
}

struct scSpan {
    explicit scSpan(UINT year) {
        std::memset(this, 0xAB, sizeof *this);
        EXPECT_EQ(UtilLocGetDSTStartAndEndInUTC(year, &start, &end), S_OK);
    }
    Moment start, end;
};

Moment MomentOf(const std::u16string& column) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0;
    std::sscanf(tvut::NarrowCase(column).c_str(), "%d-%d-%d %d:%d", &year, &month, &day, &hour, &minute);
    return At(year, month, day, hour, minute);
}

// The rows of this process's zone.
std::vector<tvut::scCaseRow> Zone() {
    const char* const zone = std::getenv("TZ");
    std::vector<tvut::scCaseRow> rows = tvut::CaseRows("zones", 3);
    std::erase_if(rows, [&](auto& row) { return tvut::NarrowCase(row[0]) != (zone ? zone : ""); });
    EXPECT_FALSE(rows.empty()) << "a zone that the table does not know";
    return rows;
}

TEST(DaylightTime, IsWhereTheWorldHadIt) {
    for (const tvut::scCaseRow& row : Zone()) {
        if (row[1].size() == 1)
            continue;
        const scSpan span(MomentOf(row[1]).wYear);
        EXPECT_EQ(span.start, MomentOf(row[1])) << row.where;
        EXPECT_EQ(span.end, MomentOf(row[2])) << row.where;
    }
}

// An hour is skipped or repeated at these very moments; nothing happens in zones that have no daylight time.
TEST(DaylightTime, IsWhereTheSystemsClocksChange) {
    TIME_ZONE_INFORMATION system{};
    const bool hasDaylightTime = Zone().at(0)[1] != u"-";
    ASSERT_EQ(GetTimeZoneInformation(&system) != TIME_ZONE_ID_UNKNOWN, hasDaylightTime);
    const WORD fixed = system.DaylightDate.wYear;
    for (int year = 1990; year <= 2037; ++year) {
        const scSpan span(static_cast<UINT>(year));
        if (!hasDaylightTime) {
            ASSERT_EQ(span.start, nothing);
            ASSERT_EQ(span.end, nothing);
        } else if (fixed == 0 || fixed == year) {
            ASSERT_EQ(Later(ToLocal(Later(span.start, -1)), 1 - 60 * system.DaylightBias),
                      ToLocal(span.start))
                << year;
            ASSERT_EQ(Later(ToLocal(Later(span.end, -1)), 1 + 60 * system.DaylightBias), ToLocal(span.end))
                << year;
            ASSERT_EQ(span.start.wYear, year);
            ASSERT_EQ(span.end.wYear, year);
            const int half = 30 * 60; // an hour that is skipped, one that comes twice
            ASSERT_EQ(ToUtc(Later(ToLocal(span.start), -half)), Later(span.start, -half));
            ASSERT_EQ(ToUtc(Later(ToLocal(span.end), half)), Later(span.end, -half));
        } else { // the conversions have no daylight time in other years
            const SYSTEMTIME &start = system.DaylightDate, &end = system.StandardDate;
            ASSERT_EQ(span.start,
                      At(year, start.wMonth, start.wDay, start.wHour, start.wMinute, 60 * system.Bias));
            ASSERT_EQ(span.end, At(year, end.wMonth, end.wDay, end.wHour, end.wMinute,
                                   60 * (system.Bias + system.DaylightBias)));
        }
    }
}

// Every seven hours, but not on the day when some of them come twice.
TEST(Conversions, ComeBack) {
    for (int year = 1990; year <= 2037; ++year) {
        const Moment end = scSpan(static_cast<UINT>(year)).end;
        for (Moment moment = At(year, 1, 1, 0); moment.wYear == year; moment = Later(moment, 7 * 3600)) {
            if (moment.wMonth != end.wMonth || moment.wDay != end.wDay) {
                ASSERT_EQ(ToUtc(ToLocal(moment)), moment);
            }
        }
    }
}

TEST(Conversions, RefuseAndReplace) {
    using Call = HRESULT(TVUT22_CALL*)(SYSTEMTIME*);
    const Moment noDate{0, 0, 0xFFFF, 0, 0, 0, 0, 0};
    for (const Call convert :
         {Call{UtilLocConvertLocalTimeToUTCTime}, Call{UtilLocConvertUTCTimeToLocalTime}}) {
        EXPECT_EQ(static_cast<UINT>(convert(nullptr)), 0x80070057);
        Moment moment{0, 3, 4, 5, 6, 7, 8, 9};
        const Moment before = moment;
        EXPECT_EQ(static_cast<UINT>(convert(&moment)), 0x80070057);
        EXPECT_EQ(moment, before);
        for (const Moment& bad : {Moment{2018, 13, 0, 1, 0, 0, 0, 0}, Moment{2018, 4, 0, 31, 0, 0, 0, 0},
                                  Moment{1, 1, 0, 1, 0, 0, 0, 0}, Moment{2018, 1, 0, 1, 24, 0, 0, 0}}) {
            moment = bad;
            EXPECT_EQ(convert(&moment), S_OK);
            EXPECT_EQ(moment, noDate);
        }
    }
}

TEST(DaylightTime, OfYearsAndPointersThatAreNone) {
    const scSpan span(2018);
    Moment start{}, end{};
    EXPECT_EQ(UtilLocGetDSTStartAndEndInUTC(0xABCD0000 + 2018, &start, nullptr), S_OK); // 16 bits count
    EXPECT_EQ(UtilLocGetDSTStartAndEndInUTC(2018, nullptr, &end), S_OK);
    EXPECT_EQ(UtilLocGetDSTStartAndEndInUTC(2018, nullptr, nullptr), S_OK);
    EXPECT_EQ(start, span.start);
    EXPECT_EQ(end, span.end);
    for (const UINT year : {0u, 1u, 1600u, 30829u, 65535u}) { // which the system's records of time have not
        EXPECT_EQ(scSpan(year).start, nothing) << year;
        EXPECT_EQ(scSpan(year).end, nothing) << year;
    }
}

} // namespace
} // namespace testing_prof
