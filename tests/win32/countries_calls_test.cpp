// Countries and languages through the calls: structures of callers, orders, and what the system says of the
// same. What the tables hold and how they are searched is shown by the unit tests.
#include "support/cases.h"
#include "support/counted_allocations.h"

#include <tvut22/tvut22.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <set>
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

TEST(CountryInfo, IsOfTheCountry) {
    const struct {
        const wchar_t *country, *language;
        UtilLocCountry info;
    } rows[] = {
        {L"de",
         L"fr-CA",
         {448, L"DE", L"DEU", 276, L"EUR", UTIL_COUNTRY_EU, 0, L"de", L"Allemagne", L"Deutschland"}},
        {L"Stati Uniti",
         L"it",
         {448, L"US", L"USA", 840, L"USD", UTIL_COUNTRY_US_LETTER | UTIL_COUNTRY_US_MEASURES, 6, L"en",
          L"Stati Uniti", L"United States"}},
        {L"826",
         L"1041",
         {448, L"GB", L"GBR", 826, L"GBP", UTIL_COUNTRY_UK_MEASURES, 0, L"en", L"\x30A4\x30AE\x30EA\x30B9",
          L"United Kingdom"}},
        {L"\x53F0\x7063",
         L"en",
         {448, L"TW", L"TWN", 158, L"TWD", 0, 6, L"zh-Hant", L"Taiwan", L"\x53F0\x7063"}},
        {L"\x395\x3BB\x3BB\x3AC\x3B4\x3B1", // upper and lower case of letters beyond ASCII
         L"EL",
         {448, L"GR", L"GRC", 300, L"EUR", UTIL_COUNTRY_EU, 0, L"el", L"\x395\x3BB\x3BB\x3AC\x3B4\x3B1",
          L"\x395\x3BB\x3BB\x3AC\x3B4\x3B1"}},
        {L"\x3B5\x39B\x3BB\x3AC\x3B4\x391",
         L"de",
         {448, L"GR", L"GRC", 300, L"EUR", UTIL_COUNTRY_EU, 0, L"el", L"Griechenland",
          L"\x395\x3BB\x3BB\x3AC\x3B4\x3B1"}},
        {L"ATA", L"de", {448, L"AQ", L"ATA", 10, L"", 0, 0, L"", L"Antarktis", L"Antarctica"}},
        {L"xk", L"ka", {448, L"XK", L"XKK", 983, L"EUR", 0, 0, L"sq", L"Kosovo", L"Kosov\xEB"}},
        {L"mv",
         L"sv",
         {448, L"MV", L"MDV", 462, L"MVR", 0, 4, L"dv", L"Maldiverna",
          L"\x78B\x7A8\x788\x7AC\x780\x7A8 \x783\x7A7\x787\x7B0\x796\x7AC"}},
    };
    for (const auto& row : rows) {
        const UtilLocCountry info = Country(row.country, row.language);
        EXPECT_EQ(std::memcmp(&info, &row.info, sizeof info), 0) << row.info.code2;
    }
}

TEST(LanguageInfo, IsOfTheLanguage) {
    const struct {
        const wchar_t *language, *inLanguage;
        UtilLocLanguage info;
    } rows[] = {
        {L"1031", L"fr", {456, L"de", L"deu", L"Latn", 0x407, 1252, 0, 0, L"allemand", L"Deutsch"}},
        {L"zh-TW",
         L"de",
         {456, L"zh-Hant", L"zho", L"Hant", 0x404, 950, 136, 0, L"Chinesisch (traditionell)",
          L"\x7E41\x9AD4\x4E2D\x6587"}},
        {L"sr-Latn-ME",
         L"cs",
         {456, L"sr-Latn", L"srp", L"Latn", 0x241A, 1250, 238, 0, L"srb\x161tina (latinka)",
          L"srpski (latinica)"}},
        {L"heb",
         L"en",
         {456, L"he", L"heb", L"Hebr", 0x40D, 1255, 177, UTIL_LANGUAGE_RIGHT_TO_LEFT, L"Hebrew",
          L"\x5E2\x5D1\x5E8\x5D9\x5EA"}},
        {L"hi",
         L"nb",
         {456, L"hi", L"hin", L"Deva", 0x439, 0, 1, 0, L"hindi", L"\x939\x93F\x928\x94D\x926\x940"}},
        {L"io", L"ja", {456, L"io", L"ido", L"Latn", 0, 0, 1, 0, L"\x30A4\x30C9\x8A9E", L"Ido"}},
    };
    for (const auto& row : rows) {
        auto info = Sized<UtilLocLanguage>();
        EXPECT_EQ(UtilLocGetLanguageInfo(row.language, row.inLanguage, &info), UTIL_OK);
        EXPECT_EQ(std::memcmp(&info, &row.info, sizeof info), 0) << row.info.tag;
    }
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
