// The tables of countries and languages: lookups, and every block of names.
#include "locale/find_country.h"
#include "locale/kept_names.h"
#include "support/cases.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>

using namespace tvut;

namespace {

template <class Characters>
std::u16string Wide(const Characters& characters) {
    return {characters.begin(), characters.end()};
}

std::u16string CountryName(const clsTranslatedNames& names, std::size_t country) {
    TranslatedName name;
    return {name.data(), names.Country(country, name)};
}

std::u16string LanguageName(const clsTranslatedNames& names, std::size_t language) {
    TranslatedName name;
    return {name.data(), names.Language(language, name)};
}

std::string CountryOf(std::u16string_view text, std::string_view language) {
    const auto inLanguage = UtilpFindLanguage(Wide(language));
    const auto found = UtilpFindCountry(text, *UtilpNamesOf(g_languages[inLanguage.value()].names));
    return found ? std::string(g_countries[*found].code2.data(), 2) : "none";
}

TEST(Languages, AreFoundByTagsCodesAndNumbers) {
    for (const scCaseRow& row : CaseRows("languages", 2)) {
        const auto found = UtilpFindLanguage(row[0]);
        EXPECT_EQ(found ? g_languages[*found].tag.data() : "none", NarrowCase(row[1])) << row.where;
    }
}

// Each by its own tag, code and number; who shares one is told by the case rows.
TEST(Languages, AreFoundByTheirOwn) {
    for (std::size_t number = 0; number < languageCount; ++number) {
        const scLanguage& language = g_languages[number];
        const std::string tag = language.tag.data();
        EXPECT_EQ(UtilpFindLanguage(Wide(tag)), number) << tag;
        const auto byCode = UtilpFindLanguage(Wide(language.code3));
        EXPECT_EQ(byCode, tag.size() > 2 ? number - 1 : number) << tag;
        if (language.langId != 0 && tag != "no") {
            EXPECT_EQ(UtilpLanguageOfId(language.langId), number) << tag;
        }
    }
}

TEST(Countries, AreFoundByWhatTheyAreCalled) {
    for (const scCaseRow& row : CaseRows("countries", 3))
        EXPECT_EQ(CountryOf(row[0], NarrowCase(row[1])), NarrowCase(row[2])) << row.where;
}

TEST(Countries, AreFoundByTheirOwn) {
    for (std::size_t number = 0; number < countryCount; ++number) {
        const scCountry& country = g_countries[number];
        EXPECT_EQ(UtilpCountryOfCode(Wide(country.code2)), number);
        EXPECT_EQ(UtilpCountryOfCode(Wide(country.code3)), number);
        const std::string digits = std::to_string(country.number);
        EXPECT_EQ(UtilpCountryOfCode(Wide(digits)), number) << digits;
        EXPECT_TRUE(number == 0 || g_countries[number - 1].code2 < country.code2);
    }
}

// Names of all blocks: each there, no longer than callers have room for, whole characters, and no two
// countries of one name, so that each is found by it. The names of their own repeat themselves here and
// there.
TEST(TranslatedNames, AreThereAndFitInEveryLanguage) {
    std::size_t longest = 0;
    for (std::uint8_t block = 0; block < blockCount; ++block) {
        const clsTranslatedNames names(block);
        std::set<std::u16string> countries;
        const auto check = [&](const std::u16string& name) {
            longest = std::max(longest, name.size());
            EXPECT_FALSE(name.empty()) << unsigned{block};
            EXPECT_EQ(name.find_first_of(std::u16string_view(u"\0\n\uFFFD", 3)), name.npos)
                << unsigned{block};
        };
        for (std::size_t country = 0; country < countryCount; ++country) {
            const std::u16string name = CountryName(names, country);
            check(name);
            EXPECT_TRUE(countries.insert(name).second || block == nativeNames)
                << testing::PrintToString(name);
            if (block != nativeNames) {
                EXPECT_EQ(names.FindCountry(name), country) << testing::PrintToString(name);
            }
        }
        for (std::size_t language = 0; language < languageCount; ++language)
            check(LanguageName(names, language));
    }
    EXPECT_EQ(longest, 81u);
    EXPECT_LT(longest, TranslatedName{}.size());
}

// A language calls itself what the table of own names says; Latin Serbian is a name with a script in both.
TEST(TranslatedNames, OfLanguagesThemselves) {
    const auto native = UtilpNamesOf(nativeNames);
    for (std::uint8_t block = 0; block < nativeNames; ++block) {
        const std::size_t language = g_nameBlocks[block].language;
        EXPECT_EQ(g_languages[language].names, block);
        EXPECT_EQ(LanguageName(*UtilpNamesOf(block), language), LanguageName(*native, language));
    }
}

TEST(TranslatedNames, AreKeptForFourLanguages) {
    std::array<std::weak_ptr<const clsTranslatedNames>, 7> names;
    const auto native = UtilpNamesOf(nativeNames);
    for (std::uint8_t block = 0; block < 5; ++block)
        names[block] = UtilpNamesOf(block);
    EXPECT_TRUE(names[0].expired());
    const auto held = UtilpNamesOf(4);
    for (const unsigned block : {2u, 3u, 1u})
        EXPECT_EQ(UtilpNamesOf(static_cast<std::uint8_t>(block)), names[block].lock());
    for (std::uint8_t block = 5; block < 7; ++block) // they push out those used longest ago
        names[block] = UtilpNamesOf(block);
    EXPECT_TRUE(names[2].expired());
    EXPECT_FALSE(names[1].expired() || names[3].expired());
    EXPECT_NE(UtilpNamesOf(4), held);
    EXPECT_EQ(CountryName(*held, 0), CountryName(*UtilpNamesOf(4), 0));
    EXPECT_EQ(UtilpNamesOf(nativeNames), native);
}

TEST(TranslatedNames, AreReadByThreadsThatPushEachOthersOut) {
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < 4; ++thread)
        threads.emplace_back([thread] {
            for (unsigned time = 0; time < 60; ++time) {
                const auto block = static_cast<std::uint8_t>((time * (thread + 3) + thread) % blockCount);
                const auto names = UtilpNamesOf(block);
                const auto& order = names->InOrder();
                EXPECT_EQ(std::set(order.begin(), order.end()).size(), countryCount);
                EXPECT_FALSE(CountryName(*names, order[time]).empty());
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
