// Dates and times beside the system's own, in every locale that it has: equal but for differences that are
// listed here, and read back.
//
// The ordinary run reads back every day of 2024 and one day of each 61st month from 0100 to 9999, of other
// months in each locale; with TVUT22_ALL_YEARS in the environment, one day of every month.
#include <tvut22/locale.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace testing_prof {
namespace {

BOOL CALLBACK AddLocale(LPWSTR name, DWORD, LPARAM list) {
    reinterpret_cast<std::vector<std::wstring>*>(list)->emplace_back(name);
    return TRUE;
}

std::vector<std::wstring> Locales() {
    std::vector<std::wstring> names{L""};
    EnumSystemLocalesEx(AddLocale, LOCALE_ALL, reinterpret_cast<LPARAM>(&names), nullptr);
    return names;
}

// A string of the OLE allocator that is used again and again.
class clsText {
  public:
    clsText() = default;
    clsText(const clsText&) = delete;
    ~clsText() { SysFreeString(text_); }
    BSTR* Place() { return &text_; }
    BSTR Get() const { return text_; }

  private:
    BSTR text_ = nullptr;
};

constexpr double firstDay = -657434; // 1 January 0100
constexpr double daysOfAMonth = 30.436875;

const std::vector<SYSTEMTIME>& DaysOf2024() {
    static const std::vector<SYSTEMTIME> days = [] {
        std::vector<SYSTEMTIME> all(366);
        for (std::size_t day = 0; day < all.size(); ++day)
            UtilLocDateTimeToSYSTEMTIME(45292 + static_cast<double>(day), &all[day]);
        return all;
    }();
    return days;
}

// ---- What the system writes -------------------------------------------------------------------------

std::wstring SystemsDate(const std::wstring& locale, const SYSTEMTIME& time, DWORD flags) {
    wchar_t text[256] = L"";
    GetDateFormatEx(locale.c_str(), flags, &time, nullptr, text, 256, nullptr);
    return text;
}
std::wstring SystemsTime(const std::wstring& locale, const SYSTEMTIME& time, DWORD flags) {
    wchar_t text[256] = L"";
    GetTimeFormatEx(locale.c_str(), flags, &time, nullptr, text, 256);
    return text;
}

using Differences = std::map<std::string, std::set<std::string>>; // what differs, in which languages

class clsComparison {
  public:
    void Compare(const char* what, const std::wstring& locale, const SYSTEMTIME& time, UINT flags,
                 const std::wstring& systems) {
        ASSERT_EQ(UtilLocLocaleStringFromSystemTime(&time, locale.c_str(), flags, nullptr, text_.Place()),
                  UTIL_OK);
        if (systems == text_.Get())
            return;
        const std::wstring language = locale.substr(0, locale.find(L'-'));
        differences[what].insert({language.begin(), language.end()});
    }

    Differences differences;

  private:
    clsText text_;
};

TEST(DatesBesideTheSystem, AreEqualButForTheseLanguages) {
    clsComparison all;
    for (const std::wstring& locale : Locales())
        for (const UINT user : {0u, unsigned{UTIL_DATETIME_NO_USER}}) {
            const DWORD own = user ? LOCALE_NOUSEROVERRIDE : 0;
            for (const SYSTEMTIME& day : DaysOf2024()) {
                all.Compare("short date", locale, day, UTIL_DATETIME_DATE | user,
                            SystemsDate(locale, day, DATE_SHORTDATE | own));
                all.Compare("long date", locale, day, UTIL_DATETIME_DATE | UTIL_DATETIME_LONG | user,
                            SystemsDate(locale, day, DATE_LONGDATE | own));
            }
            for (int half = 0; half < 48; ++half) {
                SYSTEMTIME time = DaysOf2024()[0];
                time.wHour = static_cast<WORD>(half / 2);
                time.wMinute = static_cast<WORD>(half % 2 * 35);
                time.wSecond = 7;
                all.Compare("time", locale, time, UTIL_DATETIME_TIME | user, SystemsTime(locale, time, own));
                all.Compare("time without seconds", locale, time,
                            UTIL_DATETIME_TIME | UTIL_DATETIME_NO_SECONDS | user,
                            SystemsTime(locale, time, TIME_NOSECONDS | own));
            }
        }
    const Differences expected = {
        // The system prints Gregorian years there.
        {"short date", {"th"}},
        {"long date",
         {"th",
          // gg is the era once, the system doubles it (and in byn, lo and wal the next as well)
          "la",
          // months are in the genitive where the day stands anywhere; the system wants it in front, or takes
          // one in
          // quotes for it
          "byn", "dz", "hy", "lo", "mn", "ps", "sah", "sd", "so", "tig", "wal", "xh"}},
        // The locale has a short time of its own; the system strikes the seconds out of the long one.
        {"time without seconds", {"bg", "brx", "dz", "fr", "hsb", "nds"}},
    };
    EXPECT_EQ(all.differences, expected);
}

// ---- And back -----------------------------------------------------------------------------------------

class clsRoundTrips {
  public:
    explicit clsRoundTrips(const std::wstring& locale) : locale_(locale) {}

    void Try(const SYSTEMTIME& time, UINT flags) {
        ASSERT_EQ(UtilLocLocaleStringFromSystemTime(&time, locale_.c_str(), flags, nullptr, text_.Place()),
                  UTIL_OK);
        for (const UINT exact : {0u, unsigned{UTIL_DATETIME_EXACT}}) {
            SYSTEMTIME back{};
            const INT result = UtilLocSystemTimeFromLocaleString(text_.Get(), locale_.c_str(), flags | exact,
                                                                 nullptr, &back);
            ASSERT_TRUE(result == UTIL_OK && std::memcmp(&back, &time, sizeof time) == 0)
                << testing::PrintToString(locale_) << ' ' << testing::PrintToString(text_.Get()) << ' '
                << flags << ' ' << exact << ": " << result << ' ' << back.wYear << '-' << back.wMonth << '-'
                << back.wDay << ' ' << back.wHour << ':' << back.wMinute << ':' << back.wSecond;
        }
    }

    void TryDates(const SYSTEMTIME& time) {
        Try(time, UTIL_DATETIME_DATE);
        Try(time, UTIL_DATETIME_DATE | UTIL_DATETIME_LONG);
    }

  private:
    const std::wstring& locale_;
    clsText text_;
};

TEST(DatesOfAllLocales, ComeBack) {
    const int step = std::getenv("TVUT22_ALL_YEARS") ? 1 : 61;
    int first = 0;
    for (const std::wstring& locale : Locales()) {
        clsRoundTrips trips(locale);
        for (SYSTEMTIME day : DaysOf2024()) {
            trips.TryDates(day);
            day.wHour = static_cast<WORD>(day.wDay % 24);
            day.wMinute = static_cast<WORD>(day.wDay * 2 % 60);
            trips.Try(day, UTIL_DATETIME_LONG | UTIL_DATETIME_NO_SECONDS);
            day.wSecond = static_cast<WORD>(59 - day.wMinute);
            trips.Try(day, 0);
        }
        for (int month = first++ % step; month < 9900 * 12; month += step) {
            SYSTEMTIME day{};
            ASSERT_EQ(UtilLocDateTimeToSYSTEMTIME(std::floor(firstDay + month * daysOfAMonth), &day),
                      UTIL_OK);
            trips.TryDates(day);
        }
        if (HasFatalFailure())
            return;
    }
}

} // namespace
} // namespace testing_prof
