// Countries and languages through the calls: structures of callers, orders, and what the system says of the
// same. What the tables hold and how they are searched is shown by the unit tests.
#include "support/cases.h"
#include "support/counted_allocations.h"

#include <tvut22/tvut22.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace testing_prof {
namespace {

constexpr INT allCountries = 250;
constexpr const wchar_t* nameLanguages[] = {
    L"ar", L"be", L"bg",      L"ca", L"cs", L"da", L"de", L"el", L"en", L"es",     L"et", L"fa",
    L"fi", L"fr", L"ga",      L"he", L"hi", L"hr", L"hu", L"id", L"is", L"it",     L"ja", L"ko",
    L"lt", L"lv", L"mk",      L"mt", L"nl", L"no", L"pl", L"pt", L"ro", L"ru",     L"sk", L"sl",
    L"sq", L"sr", L"sr-Latn", L"sv", L"th", L"tr", L"uk", L"vi", L"zh", L"zh-Hant"};

static_assert(offsetof(UtilLocCountry, code2) == 4 && offsetof(UtilLocCountry, code3) == 12 &&
              offsetof(UtilLocCountry, number) == 20 && offsetof(UtilLocCountry, currency) == 24 &&
              offsetof(UtilLocCountry, flags) == 32 && offsetof(UtilLocCountry, firstDay) == 36 &&
              offsetof(UtilLocCountry, language) == 40 && offsetof(UtilLocCountry, name) == 64 &&
              offsetof(UtilLocCountry, nativeName) == 256 && sizeof(UtilLocCountry) == 448);
static_assert(offsetof(UtilLocLanguage, tag) == 4 && offsetof(UtilLocLanguage, code3) == 36 &&
              offsetof(UtilLocLanguage, script) == 44 && offsetof(UtilLocLanguage, langId) == 56 &&
              offsetof(UtilLocLanguage, codePage) == 60 && offsetof(UtilLocLanguage, charset) == 64 &&
              offsetof(UtilLocLanguage, flags) == 68 && offsetof(UtilLocLanguage, name) == 72 &&
              offsetof(UtilLocLanguage, nativeName) == 264 && sizeof(UtilLocLanguage) == 456);

template <class Structure>
Structure Sized(UINT size = sizeof(Structure)) {
    Structure info{};
    info.size = size;
    return info;
}

std::vector<UtilLocCountry> List(const wchar_t* language) {
    std::vector<UtilLocCountry> list(allCountries);
    list[0].size = sizeof(UtilLocCountry);
    EXPECT_EQ(UtilLocGetCountryList(language, list.data(), allCountries), allCountries);
    return list;
}

UtilLocCountry Country(const wchar_t* country, const wchar_t* language) {
    auto info = Sized<UtilLocCountry>();
    EXPECT_EQ(UtilLocGetCountryInfo(country, language, &info), UTIL_OK) << country;
    return info;
}

// All that there are.
std::vector<UtilLocLanguage> Languages() {
    std::vector<UtilLocLanguage> languages;
    auto info = Sized<UtilLocLanguage>();
    for (wchar_t first = L'a'; first <= L'z'; ++first)
        for (wchar_t second = L'a'; second <= L'z'; ++second) {
            const std::wstring tag{first, second};
            if (UtilLocGetLanguageInfo(tag.c_str(), L"en", &info) == UTIL_OK && info.tag == tag)
                languages.push_back(info);
        }
    for (const wchar_t* tag : {L"zh-Hant", L"sr-Latn"}) {
        EXPECT_EQ(UtilLocGetLanguageInfo(tag, L"en", &info), UTIL_OK);
        languages.push_back(info);
    }
    EXPECT_EQ(languages.size(), 186u);
    return languages;
}

// All fields of a structure, as the cases have them.
template <class... Fields>
std::wstring Joined(const Fields&... fields) {
    std::wostringstream text;
    ((text << fields << L'|'), ...);
    return text.str();
}
std::wstring Text(const UtilLocCountry& of) {
    return Joined(of.size, of.code2, of.code3, of.number, of.currency, of.flags, of.firstDay, of.language,
                  of.name, of.nativeName);
}
std::wstring Text(const UtilLocLanguage& of) {
    return Joined(of.size, of.tag, of.code3, of.script, of.langId, of.codePage, of.charset, of.flags, of.name,
                  of.nativeName);
}

template <class Structure, class Call>
void ExpectCases(const char* file, Call call) {
    for (const tvut::scCaseRow& row : tvut::CaseRows(file, 3)) {
        auto info = Sized<Structure>();
        EXPECT_EQ(call(tvut::WideCase(row[0]).c_str(), tvut::WideCase(row[1]).c_str(), &info), UTIL_OK);
        EXPECT_EQ(Text(info), tvut::WideCase(row[2])) << row.where;
    }
}

TEST(CountryInfo, IsOfTheCountry) {
    ExpectCases<UtilLocCountry>("country_info", UtilLocGetCountryInfo);
}
TEST(LanguageInfo, IsOfTheLanguage) {
    ExpectCases<UtilLocLanguage>("language_info", UtilLocGetLanguageInfo);
}

// In each language: all countries, in the system's order, named as they are alone.
TEST(CountryList, IsInTheOrderOfItsLanguage) {
    for (const wchar_t* language : nameLanguages) {
        const auto list = List(language);
        std::set<std::wstring> codes;
        for (std::size_t at = 0; at < list.size(); ++at) {
            codes.insert(list[at].code2);
            const UtilLocCountry alone = Country(list[at].code3, language);
            ASSERT_EQ(std::memcmp(&list[at], &alone, sizeof alone), 0) << list[at].code2;
            if (at == 0)
                continue;
            const int order =
                CompareStringEx(language, 0, list[at - 1].name, -1, list[at].name, -1, nullptr, nullptr, 0);
            ASSERT_TRUE(order == CSTR_LESS_THAN ||
                        (order == CSTR_EQUAL && wcscmp(list[at - 1].code2, list[at].code2) < 0))
                << list[at].code2;
        }
        EXPECT_EQ(codes.size(), list.size());
    }
    EXPECT_STREQ(List(L"no")[249].code2, L"AX"); // Aaland, after z
    EXPECT_STREQ(List(L"ka")[0].name, List(L"en")[0].name);
}

TEST(CountryList, FillsWhatThereIsRoomFor) {
    struct scLarger {
        UtilLocCountry country;
        BYTE later[12];
    };
    const auto whole = List(L"sv");
    for (const UINT count : {0u, 1u, 3u, 250u, 251u}) {
        std::vector<scLarger> list(253);
        std::memset(list.data(), 0xAA, list.size() * sizeof list[0]);
        const std::vector<scLarger> before = list;
        list[0].country.size = count == 0 ? 0 : sizeof(scLarger);
        EXPECT_EQ(UtilLocGetCountryList(L"sv", &list[0].country, count), allCountries);
        const std::size_t filled = std::min<std::size_t>(count, whole.size());
        for (std::size_t at = 0; at < filled; ++at) {
            EXPECT_EQ(list[at].country.size, sizeof(scLarger));
            EXPECT_EQ(std::memcmp(list[at].country.code2, whole[at].code2, sizeof whole[at] - sizeof(UINT)),
                      0);
            EXPECT_EQ(std::count(list[at].later, std::end(list[at].later), 0), 12);
        }
        const std::size_t rest = std::max<std::size_t>(filled, 1); // whose size was written here
        EXPECT_EQ(std::memcmp(&list[rest], &before[rest], (list.size() - rest) * sizeof list[0]), 0);
    }
    EXPECT_EQ(UtilLocGetCountryList(L"sv", nullptr, 250), allCountries);
}

TEST(Countries, RefuseWhatIsWrongAndTouchNothing) {
    const std::wstring endless(100000, L'x');
    const struct {
        const wchar_t *what, *language;
        UINT country, languageSize;
        INT asCountry, asLanguage, asList;
    } rows[] = {
        {nullptr, L"en", 448, 456, UTIL_BAD_ARGUMENT, UTIL_OK, allCountries}, // a null language is the user's
        {L"de", L"en", 447, 455, UTIL_BAD_ARGUMENT, UTIL_BAD_ARGUMENT, UTIL_BAD_ARGUMENT},
        {L"de", L"en", 0, 0, UTIL_BAD_ARGUMENT, UTIL_BAD_ARGUMENT, UTIL_BAD_ARGUMENT},
        {L"de", L"xx", 448, 456, UTIL_NOT_FOUND, UTIL_NOT_FOUND, UTIL_NOT_FOUND},
        {L"de", L"", 448, 456, UTIL_NOT_FOUND, UTIL_NOT_FOUND, UTIL_NOT_FOUND},
        {L"", L"en", 448, 456, UTIL_NOT_FOUND, UTIL_NOT_FOUND, allCountries},
        {endless.c_str(), endless.c_str(), 448, 456, UTIL_NOT_FOUND, UTIL_NOT_FOUND, UTIL_NOT_FOUND},
        {endless.c_str(), L"en", 448, 456, UTIL_NOT_FOUND, UTIL_NOT_FOUND, allCountries},
    };
    for (const auto& row : rows) {
        const auto noCountry = Sized<UtilLocCountry>(row.country);
        const auto noLanguage = Sized<UtilLocLanguage>(row.languageSize);
        UtilLocCountry country = noCountry, list = noCountry;
        UtilLocLanguage language = noLanguage;
        EXPECT_EQ(UtilLocGetCountryInfo(row.what, row.language, &country), row.asCountry);
        EXPECT_EQ(UtilLocGetLanguageInfo(row.what, row.language, &language), row.asLanguage);
        EXPECT_EQ(UtilLocGetCountryList(row.language, &list, 1), row.asList);
        EXPECT_TRUE(row.asCountry == UTIL_OK || std::memcmp(&country, &noCountry, sizeof country) == 0);
        EXPECT_TRUE(row.asLanguage == UTIL_OK || std::memcmp(&language, &noLanguage, sizeof language) == 0);
        EXPECT_TRUE(row.asList == allCountries || std::memcmp(&list, &noCountry, sizeof list) == 0);
    }
    EXPECT_EQ(UtilLocGetCountryInfo(L"de", L"en", nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilLocGetLanguageInfo(L"de", L"en", nullptr), UTIL_BAD_ARGUMENT);
}

TEST(Countries, AreInTheLanguageOfTheProgram) {
    const UINT before = UtilLanguageGet();
    for (const auto& [language, name] :
         {std::pair(7u, L"Spanien"), {0x040Cu, L"Espagne"}, {0xFFFFu, L"Spain"}, {0u, L"Spain"}}) {
        ASSERT_EQ(UtilLanguageSet(language), 0);
        EXPECT_STREQ(Country(L"ES", nullptr).name, name);
    }
    UtilLanguageSet(before);
}

TEST(Countries, FailWithoutMemoryAndTouchNothing) {
    const auto before = Sized<UtilLocCountry>();
    UtilLocCountry list = before;
    INT result = 0;
    int failures = 0;
    int language = 0;
    FailEachAllocation(
        [&] {
            list = before;
            result = UtilLocGetCountryList(nameLanguages[language++ % 12], &list, 1); // pushed out since
        },
        [&](bool failed) {
            EXPECT_TRUE(result == allCountries || (failed && result == UTIL_FAILED));
            EXPECT_TRUE(result == allCountries || std::memcmp(&list, &before, sizeof list) == 0);
            failures += result == UTIL_FAILED;
        });
    EXPECT_GT(failures, 3);
}

std::wstring OfLocale(const std::wstring& locale, LCTYPE what) {
    wchar_t text[100];
    return {text,
            static_cast<std::size_t>(std::max(GetLocaleInfoEx(locale.c_str(), what, text, 100), 1) - 1)};
}

// Case rows name what is different: a locale and its value here and there.
class clsDifferences {
  public:
    explicit clsDifferences(const char* file) {
        for (const tvut::scCaseRow& row : tvut::CaseRows(file, 3))
            expected_.insert({tvut::WideCase(row[0]), {tvut::WideCase(row[1]), tvut::WideCase(row[2])}});
    }
    ~clsDifferences() {
        for (const auto& [locale, values] : expected_)
            ADD_FAILURE() << "no difference any more: " << testing::PrintToString(locale);
    }
    void Check(const std::wstring& locale, const std::wstring& ours, const std::wstring& theirs) {
        if (ours != theirs && expected_.erase({locale, {ours, theirs}}) == 0)
            ADD_FAILURE() << testing::PrintToString(locale + L" => " + ours + L" => " + theirs);
    }

  private:
    std::set<std::pair<std::wstring, std::pair<std::wstring, std::wstring>>> expected_;
};

TEST(Languages, AreWhatTheSystemSays) {
    clsDifferences differences("system_languages");
    for (const UtilLocLanguage& language : Languages()) {
        const std::wstring tag = language.tag;
        const LCID id = LocaleNameToLCID(language.tag, 0);
        differences.Check(tag, std::to_wstring(language.langId), std::to_wstring(id == 0x1000 ? 0 : id));
        if (id != 0)
            differences.Check(tag, std::to_wstring(language.codePage),
                              OfLocale(tag, LOCALE_IDEFAULTANSICODEPAGE));
        CHARSETINFO charset{};
        const bool known = TranslateCharsetInfo(reinterpret_cast<DWORD*>(ULONG_PTR{language.codePage}),
                                                &charset, TCI_SRCCODEPAGE);
        EXPECT_TRUE(!known || language.charset == charset.ciCharset) << language.codePage;
    }
}

// The locale of each country and its main language, where the system has it.
TEST(Countries, AreWhatTheSystemSays) {
    clsDifferences differences("system_countries");
    int locales = 0;
    for (const UtilLocCountry& country : List(L"en")) {
        auto language = Sized<UtilLocLanguage>();
        if (UtilLocGetLanguageInfo(country.language, L"en", &language) != UTIL_OK)
            continue;
        std::wstring locale = std::wstring(language.tag) + L"-" + country.code2;
        if (OfLocale(locale, LOCALE_SINTLSYMBOL)
                .empty()) // a few languages have no locale without a script there
            locale = std::wstring(language.tag) + L"-" + language.script + L"-" + country.code2;
        if (OfLocale(locale, LOCALE_SISO3166CTRYNAME) != country.code2)
            continue;
        ++locales;
        differences.Check(locale, country.nativeName, OfLocale(locale, LOCALE_SNATIVECTRYNAME));
        differences.Check(locale, language.nativeName, OfLocale(locale, LOCALE_SNATIVELANGNAME));
        differences.Check(locale, country.currency, OfLocale(locale, LOCALE_SINTLSYMBOL));
        differences.Check(locale, country.code3, OfLocale(locale, LOCALE_SISO3166CTRYNAME2));
        differences.Check(locale, std::to_wstring(country.firstDay),
                          OfLocale(locale, LOCALE_IFIRSTDAYOFWEEK));
        differences.Check(locale, country.flags & UTIL_COUNTRY_US_LETTER ? L"1" : L"9",
                          OfLocale(locale, LOCALE_IPAPERSIZE));
    }
    EXPECT_GT(locales, 200);
}

} // namespace
} // namespace testing_prof
