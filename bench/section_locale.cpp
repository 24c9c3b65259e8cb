// Character sets of long texts against reading them, daylight time against the system's calls that it needs,
// lists of countries against sorting one.
#include "plain_pass.h"
#include "sections.h"

#include <tvut22/locale.h>

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <optional>
#include <vector>

namespace bench {

namespace {

// Lines of words, in which marks and Latin letters are mixed as they are in such texts.
std::wstring Text(const wchar_t* line, std::size_t units) {
    std::wstring text;
    while (text.size() < units)
        text += line;
    text.resize(units);
    return text;
}

double Classify(const std::wstring& text, INT expected) {
    INT charset = -1;
    const double ns = Timed([&] { charset = UtilGetLikelyCharsetFromString(text.c_str()); });
    Require(charset == expected, "a wrong character set");
    return ns;
}

void MeasureCharset(const scSettings& settings, clsReport& report) {
    const struct {
        const char* name;
        const wchar_t* line;
        INT charset;
        double goal = 1.25;
    } rows[] = {
        {"Latin", L"The quick brown fox \x2014 na\x00EFve, of course \x2014 jumps over the lazy dog.\r\n", 0},
        {"Russian",
         L"\x0421\x044A\x0435\x0448\x044C \x0436\x0435 \x0435\x0449\x0451 \x2014 \x044D\x0442\x0438\x0445 "
         L"tvUT22\r\n",
         204},
        {"kana",
         L"\x3044\x308D\x306F\x306B\x307B\x3078\x3068\x3001\x3061\x308A\x306C\x308B\x30F2\x30AB\x3002\r\n",
         128},
        {"Korean", L"\xD0A4\xC2A4\xC758 \xACE0\xC720 \xC870\xAC74\xC740 \xC785\xC220\xB07C\xB9AC\r\n", 129},
        {"ancient Greek",
         L"\x1F00\x03C1\x03C7\x1F74 \x1F25\x03BC\x03B9\x03C3\x03C5 \x03C0\x03B1\x03BD\x03C4\x03CC\x03C2\r\n",
         161},
        {"of many sorts of marks", L"\x2014\x0700\x1200\xFF01\x0E80\xA000", 0, 3},
    };
    for (const auto& row : rows) {
        const std::wstring text = Text(row.line, 512 * 1024);
        const Round rounds[] = {[&] { return Classify(text, row.charset); }, PlainPass(text.size())};
        const auto ns = Race(rounds, settings.rounds);
        const std::string work = std::string("UtilGetLikelyCharsetFromString, 1 MB ") + row.name;
        report.Against(work, ns[0], "plain pass, 1 MB", ns[1], AtMost(row.goal));
    }
}

// What a program would do without the list: it has the names from somewhere, and sorts them.
double SortNames(const std::vector<UtilLocCountry>& list, const wchar_t* language, std::size_t times) {
    std::vector<const wchar_t*> names(list.size());
    return PerCall(times, [&](std::size_t) {
        // By code, which is as good as in no order.
        std::transform(list.begin(), list.end(), names.begin(),
                       [](const UtilLocCountry& country) { return country.name; });
        std::sort(names.begin(), names.end(), [&](const wchar_t* a, const wchar_t* b) {
            return CompareStringEx(language, 0, a, -1, b, -1, nullptr, nullptr, 0) == CSTR_LESS_THAN;
        });
    });
}

void MeasureCountries(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 5 : 50;
    std::vector<UtilLocCountry> list(250), byCode(250);
    list[0].size = byCode[0].size = sizeof list[0];
    const auto fill = [&](const wchar_t* language) {
        Require(UtilLocGetCountryList(language, list.data(), 250) == 250, "no list");
    };
    UtilLocCountry info{};
    info.size = sizeof info;
    const auto find = [&](const wchar_t* country) {
        Require(UtilLocGetCountryInfo(country, L"de", &info) == UTIL_OK, "no country");
    };
    fill(L"de");
    byCode = list;
    std::sort(byCode.begin(), byCode.end(), [](const UtilLocCountry& a, const UtilLocCountry& b) {
        return std::wcscmp(a.code2, b.code2) < 0;
    });
    constexpr const wchar_t* five[] = {L"fr", L"hr", L"ja", L"pl", L"uk"}; // one more than are kept
    const Round rounds[] = {
        [&] {
            fill(L"de");
            return PerCall(calls, [&](std::size_t) { fill(L"de"); });
        },
        [&] { return SortNames(byCode, L"de-DE", calls); },
        [&] { return PerCall(calls, [&](std::size_t number) { fill(five[number % std::size(five)]); }); },
        [&] {
            fill(L"de");
            return PerCall(calls, [&](std::size_t) { find(L"DE"); });
        },
        [&] { return PerCall(calls, [&](std::size_t) { find(L"Zypern"); }); },
    };
    const auto ns = Race(rounds, settings.rounds);
    const char* const sorting = "sorting the names by CompareStringEx";
    report.Against("UtilLocGetCountryList, 250, warm", ns[0], sorting, ns[1], AtMost(4));
    report.Against("UtilLocGetCountryList, 250, unfolded anew", ns[2], sorting, ns[1]);
    report.Against("UtilLocGetCountryInfo by code", ns[3], sorting, ns[1]);
    report.Against("UtilLocGetCountryInfo by name", ns[4], sorting, ns[1]);
}

void MeasureTime(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 1000 : 20000;
    SYSTEMTIME start, end, ours, theirs;
    TIME_ZONE_INFORMATION zone;
    const SYSTEMTIME noon{2018, 7, 0, 1, 12, 0, 0, 0};
    const Round rounds[] = {
        [&] {
            return PerCall(calls, [&](std::size_t number) {
                UtilLocGetDSTStartAndEndInUTC(1990 + number % 48, &start, &end);
            });
        },
        [&] { return PerCall(calls, [&](std::size_t) { GetTimeZoneInformation(&zone); }); },
        [&] {
            return PerCall(calls, [&](std::size_t) {
                ours = noon;
                UtilLocConvertLocalTimeToUTCTime(&ours);
            });
        },
        [&] {
            return PerCall(calls,
                           [&](std::size_t) { TzSpecificLocalTimeToSystemTime(nullptr, &noon, &theirs); });
        },
    };
    const auto ns = Race(rounds, settings.rounds);
    Require(std::memcmp(&ours, &theirs, sizeof ours) == 0, "a wrong time");
    report.Against("UtilLocGetDSTStartAndEndInUTC", ns[0], "GetTimeZoneInformation", ns[1]);
    report.Against("UtilLocConvertLocalTimeToUTCTime", ns[2], "the system's conversion", ns[3], AtMost(1.1));
}

} // namespace

void MeasureLocale(const scSettings& settings, clsReport& report) {
    report.Section("Locale: character sets, daylight time, countries");
    MeasureCharset(settings, report);
    MeasureTime(settings, report);
    MeasureDates(settings, report);
    MeasureCountries(settings, report);
    report.Remark(
        "Marks of many sorts: the worst that a text can do. Ideographs are not in the list: the first one "
        "ends the search. Daylight time: beside the system's call there are two dates to calculate and four "
        "conversions of file times. Unfolded anew: five languages in turn, of which four are kept.");
}

} // namespace bench
