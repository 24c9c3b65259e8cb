// The exports of dates and times: arguments, results that stay untouched, memory, the user's changes. What
// text becomes what date is shown by tests/unit; locales by the test beside the system.
#include "support/counted_allocations.h"
#include "support/page_end.h"

#include <tvut22/locale.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace testing_prof {
namespace {

const SYSTEMTIME october{2024, 10, 9, 15, 14, 30, 5, 67}; // of a weekday that there is not

class clsText {
  public:
    clsText() = default;
    clsText(const clsText&) = delete;
    ~clsText() { SysFreeString(text); }
    std::wstring Get() const { return text ? std::wstring(text, SysStringLen(text)) : L"(null)"; }

    BSTR text = nullptr;
};

std::wstring Written(const SYSTEMTIME& time, const wchar_t* locale, UINT flags,
                     const wchar_t* picture = nullptr) {
    clsText text;
    const INT result = UtilLocLocaleStringFromSystemTime(&time, locale, flags, picture, &text.text);
    return result == UTIL_OK ? text.Get() : std::to_wstring(result);
}

TEST(WritingDates, ByLocaleFlagsAndPicture) {
    const struct {
        const wchar_t* locale;
        UINT flags;
        const wchar_t* picture;
        const wchar_t* text;
    } rows[] = {
        {L"en-US", 0, nullptr, L"10/15/2024 2:30:05 PM"},
        {L"en-US", 1 | 2 | 4 | 8, nullptr, L"Tuesday, October 15, 2024 2:30 PM"},
        {L"en-US", 1 | 16 | 32, nullptr, L"10/15/2024"},
        {L"en-us", 2, nullptr, L"2:30:05 PM"},
        {L"de", 4 | 8, nullptr, L"Dienstag, 15. Oktober 2024 14:30"},
        {L"th-TH", 1, nullptr, L"15/10/2567"},
        {L"", 0, L"yyyy-MM-dd'T'HH:mm:ss.fff", L"2024-10-15T14:30:05.067"},
        {L"", 2, L"ddd d", L"Tue 15"}, // the picture says what is written
        {L"", 0, L"", L""},
        {L"xx-XX", 0, nullptr, L"-6"},
        {L"xx-XX", 64, nullptr, L"-2"},
        {L"", 64, nullptr, L"-2"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Written(october, row.locale, row.flags, row.picture), row.text) << row.flags;
    EXPECT_EQ(Written(october, nullptr, 0), Written(october, L"en-US", 0)); // whom Wine's user is
    const std::wstring longest(255, L'd'), tooLong(256, L'd'), blanks(84, L'x'), many(85, L'x');
    EXPECT_EQ(Written(october, L"", 0, longest.c_str()), L"Tuesday");
    EXPECT_EQ(Written(october, L"", 0, tooLong.c_str()), L"-2");
    EXPECT_EQ(Written(october, blanks.c_str(), 0), L"-6");
    EXPECT_EQ(Written(october, many.c_str(), 0), L"-6");
    std::wstring names; // a text beyond what usually fits
    for (int name = 0; name < 31; ++name)
        names += L"MMMMdddd";
    EXPECT_EQ(Written(october, L"en-US", 0, names.c_str()).size(), 31u * 14);
}

TEST(WritingDates, ChecksWhatItLooksAt) {
    const struct {
        SYSTEMTIME time;
        bool isDate, isTime;
    } rows[] = {
        {{100, 1, 0, 1, 0, 0, 0, 0}, true, true},         {{9999, 12, 0, 31, 23, 59, 59, 999}, true, true},
        {{99, 12, 0, 31, 0, 0, 0, 0}, false, true},       {{10000, 1, 0, 1, 0, 0, 0, 0}, false, true},
        {{2023, 2, 0, 29, 0, 0, 0, 0}, false, true},      {{2024, 2, 0, 30, 0, 0, 0, 0}, false, true},
        {{2024, 0, 0, 1, 0, 0, 0, 0}, false, true},       {{2024, 13, 0, 1, 0, 0, 0, 0}, false, true},
        {{2024, 256 + 1, 0, 1, 0, 0, 0, 0}, false, true}, {{2024, 1, 0, 256 + 1, 0, 0, 0, 0}, false, true},
        {{2024, 1, 0, 1, 24, 0, 0, 0}, true, false},      {{2024, 1, 0, 1, 0, 60, 0, 0}, true, false},
        {{2024, 1, 0, 1, 0, 0, 60, 0}, true, false},      {{2024, 1, 0, 1, 0, 0, 0, 1000}, true, false},
    };
    for (const auto& row : rows) {
        const auto result = [&](UINT flags, const wchar_t* picture) {
            return UtilLocLocaleStringFromSystemTime(&row.time, L"en-US", flags, picture, nullptr);
        };
        EXPECT_EQ(result(UTIL_DATETIME_DATE, nullptr), row.isDate ? UTIL_OK : UTIL_BAD_ARGUMENT);
        EXPECT_EQ(result(UTIL_DATETIME_TIME, nullptr), row.isTime ? UTIL_OK : UTIL_BAD_ARGUMENT);
        EXPECT_EQ(result(0, nullptr), row.isDate && row.isTime ? UTIL_OK : UTIL_BAD_ARGUMENT);
        EXPECT_EQ(result(0, L"g"), row.isDate ? UTIL_OK : UTIL_BAD_ARGUMENT);
        EXPECT_EQ(result(0, L"t"), row.isTime ? UTIL_OK : UTIL_BAD_ARGUMENT);
        EXPECT_EQ(result(0, L"'d'"), UTIL_OK);
    }
}

TEST(ReadingDates, RefusesAndTouchesNothing) {
    const std::wstring tooLong(1025, L' '), longest = std::wstring(1014, L' ') + L"10/15/2024";
    const struct {
        const wchar_t* text;
        const wchar_t* locale;
        UINT flags;
        const wchar_t* picture;
        INT result;
    } rows[] = {
        {nullptr, L"en-US", 1, nullptr, UTIL_BAD_ARGUMENT},
        {tooLong.c_str(), L"en-US", 1, nullptr, UTIL_BAD_ARGUMENT},
        {longest.c_str(), L"en-US", 1, nullptr, UTIL_OK},
        {L"10/15/2024", L"en-US", 64, nullptr, UTIL_BAD_ARGUMENT},
        {L"10/15/2024", L"xx-XX", 1, nullptr, UTIL_NOT_FOUND},
        {L"31/12/2026", L"en-US", 1, nullptr, UTIL_NOT_PARSED},
        {L"15.10.", L"", 0, L"d.M.", UTIL_BAD_ARGUMENT}, // says no date
        {L"15", L"", 0, L"m", UTIL_BAD_ARGUMENT},
        {L"a", L"", 0, L"'a'", UTIL_BAD_ARGUMENT},
        {L"", L"", 0, L"", UTIL_BAD_ARGUMENT},
        {L"2024 10", L"", 2, L"yyyy M", UTIL_BAD_ARGUMENT}, // a time is asked for
        {L"2024 10", L"", 3, L"yyyy M", UTIL_BAD_ARGUMENT},
        {L"15 14", L"", 2, L"d H", UTIL_OK},
        {L"15 14", L"", 0, L"d H", UTIL_BAD_ARGUMENT},
    };
    for (const auto& row : rows) {
        SYSTEMTIME time = october;
        double date = 1.5;
        EXPECT_EQ(UtilLocSystemTimeFromLocaleString(row.text, row.locale, row.flags, row.picture, &time),
                  row.result);
        EXPECT_EQ(UtilDateTimeFromLocaleString(row.text, row.locale, row.flags, row.picture, &date),
                  row.result);
        EXPECT_EQ(std::memcmp(&time, &october, sizeof time) == 0 && date == 1.5, row.result != UTIL_OK);
    }
    EXPECT_EQ(UtilLocSystemTimeFromLocaleString(L"10/15/2024", L"en-US", 1, nullptr, nullptr),
              UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilDateTimeFromLocaleString(L"10/15/2024", L"en-US", 1, nullptr, nullptr), UTIL_BAD_ARGUMENT);
}

TEST(ReadingDates, GivesThePartsThatAreWanted) {
    const wchar_t* const text = L"2024-10-15 14:30:05.067";
    const wchar_t* const picture = L"yyyy-MM-dd HH:mm:ss.fff";
    const struct {
        UINT flags;
        SYSTEMTIME time;
        double date;
    } rows[] = {{0, {2024, 10, 2, 15, 14, 30, 5, 67}, 45580 + 52205067 / 864e5},
                {1, {2024, 10, 2, 15, 0, 0, 0, 0}, 45580},
                {2, {0, 0, 0, 0, 14, 30, 5, 67}, 52205067 / 864e5}};
    for (const auto& row : rows) {
        SYSTEMTIME time{};
        double date = 0;
        EXPECT_EQ(UtilLocSystemTimeFromLocaleString(text, L"", row.flags, picture, &time), UTIL_OK);
        EXPECT_EQ(UtilDateTimeFromLocaleString(text, L"", row.flags, picture, &date), UTIL_OK);
        EXPECT_EQ(std::memcmp(&time, &row.time, sizeof time), 0) << row.flags;
        EXPECT_DOUBLE_EQ(date, row.date);
    }
}

// Letters beyond ASCII, whose case the system knows; a text that ends where memory does.
TEST(ReadingDates, InTheSystemsCaseAndWithinItsMemory) {
    clsPageEnd page;
    SYSTEMTIME time{};
    EXPECT_EQ(UtilLocSystemTimeFromLocaleString(page.Text(L"\x0412\x0422\x041E\x0420\x041D\x0418\x041A, 15 "
                                                          L"\x041E\x041A\x0422\x042F\x0411\x0420\x042F 2024"),
                                                L"ru-RU", UTIL_DATETIME_DATE | UTIL_DATETIME_LONG, nullptr,
                                                &time),
              UTIL_OK);
    EXPECT_EQ(time.wMonth, 10);
    clsText text;
    EXPECT_EQ(UtilLocLocaleStringFromSystemTime(&october, L"", 0, page.Text(L"HH'h"), &text.text), UTIL_OK);
    EXPECT_EQ(text.Get(), L"14h");
}

TEST(OleDates, AreWrittenReadAndConverted) {
    clsText text;
    text.text = SysAllocString(L"dd MMM yyyy HH:mm"); // the picture is where the result goes
    EXPECT_EQ(UtilDateTimeToLocaleString(-1.25, L"en-US", 0, text.text, &text.text), UTIL_OK);
    EXPECT_EQ(text.Get(), L"29 Dec 1899 06:00");
    SYSTEMTIME time = october;
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(), 2958466.0, -657435.0}) {
        EXPECT_EQ(UtilDateTimeToLocaleString(bad, L"en-US", 2, nullptr, &text.text), UTIL_BAD_ARGUMENT);
        EXPECT_EQ(UtilLocDateTimeToSYSTEMTIME(bad, &time), UTIL_BAD_ARGUMENT);
    }
    EXPECT_EQ(UtilLocDateTimeToSYSTEMTIME(1, nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(text.Get(), L"29 Dec 1899 06:00");
    EXPECT_EQ(std::memcmp(&time, &october, sizeof time), 0);
    EXPECT_EQ(UtilDateTimeToLocaleString(1, L"en-US", 0, nullptr, nullptr), UTIL_OK);
}

// To the second, which is as far as the system's conversion goes. It takes no moment closer to a half than it
// can tell.
TEST(OleDates, AreWhatTheSystemConverts) {
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> dates(-657434, 2958465);
    for (int number = 0; number < 100000; ++number) {
        const double date = dates(random);
        const double seconds = std::abs(date - std::trunc(date)) * 86400;
        if (std::abs(seconds - std::floor(seconds) - 0.5) < 0.01)
            continue;
        SYSTEMTIME systems{}, ours{}, rounded{};
        ASSERT_TRUE(VariantTimeToSystemTime(date, &systems));
        ASSERT_EQ(UtilLocDateTimeToSYSTEMTIME(date, &ours), UTIL_OK);
        double whole = 0; // ours without milliseconds, half a second later
        ASSERT_TRUE(SystemTimeToVariantTime(&ours, &whole));
        const double half = ours.wMilliseconds >= 500 ? 1 / 86400.0 : 0;
        ASSERT_TRUE(VariantTimeToSystemTime(whole + (whole < 0 && std::trunc(whole) != whole ? -half : half),
                                            &rounded));
        ASSERT_EQ(std::memcmp(&systems, &rounded, sizeof systems), 0) << std::to_string(date);
    }
}

TEST(Dates, AllocateNothingButTheResult) {
    clsText text;
    SYSTEMTIME time{};
    const auto work = [&] {
        EXPECT_EQ(UtilLocLocaleStringFromSystemTime(&october, L"de-DE", 4 | 16, nullptr, &text.text),
                  UTIL_OK);
        EXPECT_EQ(UtilLocSystemTimeFromLocaleString(text.text, L"de-DE", 4 | 16, nullptr, &time), UTIL_OK);
        EXPECT_EQ(UtilLocSystemTimeFromLocaleString(L"20241015", L"de-DE", 16, L"yyyyMMdd", &time), UTIL_OK);
    };
    work();
    const clsCountedAllocations counted;
    work();
    EXPECT_EQ(clsCountedAllocations::count, 1); // the string's
}

TEST(Dates, WithoutMemoryLeaveTheResult) {
    wchar_t locale[] = L"aa"; // another one each time: none is kept
    const wchar_t* const known[] = {L"de", L"fr", L"it", L"es", L"pl", L"nl", L"sv", L"da", L"fi", L"pt"};
    std::size_t next = 0;
    clsText text;
    text.text = SysAllocString(L"before");
    INT result = UTIL_OK;
    FailEachAllocation(
        [&] {
            wcscpy(locale, known[next++ % std::size(known)]);
            result = UtilLocLocaleStringFromSystemTime(&october, locale, 0, nullptr, &text.text);
        },
        [&](bool failed) {
            EXPECT_EQ(result, failed ? UTIL_FAILED : UTIL_OK);
            EXPECT_EQ(text.Get() == L"before", failed);
        });
}

// What the user sets is seen when a second is over; the locale's own picture stays.
TEST(Dates, FollowTheUsersSettings) {
    wchar_t before[80] = L"";
    ASSERT_TRUE(GetLocaleInfoEx(nullptr, LOCALE_SSHORTDATE, before, 80));
    const std::wstring own = Written(october, nullptr, 1 | 16);
    Written(october, nullptr, 1); // kept now
    ASSERT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTDATE, L"yyyy~MM~dd"));
    const DWORD start = GetTickCount();
    std::wstring text;
    do
        text = Written(october, nullptr, 1);
    while (text != L"2024~10~15" && GetTickCount() - start < 10000);
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTDATE, before);
    EXPECT_EQ(text, L"2024~10~15");
    EXPECT_EQ(Written(october, nullptr, 1 | 16), own);
}

} // namespace
} // namespace testing_prof
