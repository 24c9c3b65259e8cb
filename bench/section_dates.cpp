// Dates as text and back, in a string that is used again, against what the system takes to write one into a
// buffer.
#include "sections.h"

#include <tvut22/locale.h>

#include <windows.h>

#include <oleauto.h>

#include <cstring>
#include <cwchar>

namespace bench {

namespace {

constexpr const wchar_t* locale = L"de-DE";

class clsText {
  public:
    clsText() = default;
    clsText(const clsText&) = delete;
    ~clsText() { SysFreeString(text_); }

    void Write(const SYSTEMTIME& time, UINT flags, const wchar_t* picture = nullptr) {
        UtilLocLocaleStringFromSystemTime(&time, locale, flags, picture, &text_);
    }
    const wchar_t* Get() const { return text_ ? text_ : L""; }

  private:
    BSTR text_ = nullptr;
};

// A round of calls on dates of the days of a month.
template <class Call>
Round OfDays(std::size_t calls, Call call) {
    return [=] {
        SYSTEMTIME time{2024, 10, 0, 1, 14, 30, 5, 0};
        return PerCall(calls, [&](std::size_t number) {
            time.wDay = static_cast<WORD>(number % 28 + 1);
            call(time);
        });
    };
}

void MeasureWriting(const scSettings& settings, clsReport& report, std::size_t calls) {
    clsText text;
    wchar_t date[128] = L"", time[128] = L"";
    const Round rounds[] = {
        OfDays(calls, [&](const SYSTEMTIME& day) { text.Write(day, UTIL_DATETIME_DATE); }),
        OfDays(calls,
               [&](const SYSTEMTIME& day) {
                   GetDateFormatEx(locale, DATE_SHORTDATE, &day, nullptr, date, 128, nullptr);
               }),
        OfDays(calls, [&](const SYSTEMTIME& day) { text.Write(day, UTIL_DATETIME_LONG); }),
        OfDays(calls,
               [&](const SYSTEMTIME& day) {
                   GetDateFormatEx(locale, DATE_LONGDATE, &day, nullptr, date, 128, nullptr);
                   GetTimeFormatEx(locale, 0, &day, nullptr, time, 128);
               }),
    };
    const auto ns = Race(rounds, settings.rounds);
    rounds[2]();
    rounds[3]();
    Require(std::wstring(date) + L" " + time == text.Get(), "a wrong date");
    report.Against("write a short date", ns[0], "GetDateFormatEx", ns[1], AtMost(0.7));
    report.Against("write a long date with its time", ns[2], "GetDateFormatEx, GetTimeFormatEx", ns[3],
                   AtMost(0.6));
}

void MeasureReading(const scSettings& settings, clsReport& report, std::size_t calls) {
    const struct {
        const char* work;
        const wchar_t* text;
        const wchar_t* picture;
        UINT flags;
        std::optional<scGoal> goal;
    } rows[] = {
        {"read a short date", L"15.10.2024", nullptr, UTIL_DATETIME_DATE, AtMost(1)},
        {"read a short date, EXACT", L"15.10.2024", nullptr, UTIL_DATETIME_DATE | UTIL_DATETIME_EXACT, {}},
        {"read a long date with its time",
         L"Dienstag, 15. Oktober 2024 14:30:05",
         nullptr,
         UTIL_DATETIME_LONG,
         {}},
        {"read yyyy-MM-dd", L"2024-10-15", nullptr, UTIL_DATETIME_DATE, {}},
        {"read by a caller's picture", L"20241015", L"yyyyMMdd", UTIL_DATETIME_DATE, {}},
        {"refuse what is no date", L"x15.10.2024", nullptr, 0, {}},
    };
    for (const auto& row : rows) {
        SYSTEMTIME found{};
        wchar_t date[128] = L"";
        INT result = 0;
        const Round rounds[] = {
            OfDays(calls,
                   [&](const SYSTEMTIME&) {
                       result = UtilLocSystemTimeFromLocaleString(row.text, locale, row.flags, row.picture,
                                                                  &found);
                   }),
            OfDays(calls,
                   [&](const SYSTEMTIME& day) {
                       GetDateFormatEx(locale, DATE_SHORTDATE, &day, nullptr, date, 128, nullptr);
                   }),
        };
        const auto ns = Race(rounds, settings.rounds);
        Require(result == (row.text[0] == L'x' ? UTIL_NOT_PARSED : UTIL_OK), "a date was not read");
        report.Against(row.work, ns[0], "GetDateFormatEx", ns[1], row.goal);
    }
}

} // namespace

void MeasureDates(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 1000 : 20000;
    MeasureWriting(settings, report, calls);
    MeasureReading(settings, report, calls);
}

} // namespace bench
