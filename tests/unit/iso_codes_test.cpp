// Countries and languages against the lists of Debian's package iso-codes, which come from the standards.
//
// English names are those of the lists, or one of several there; others stand beside them in
// tests/data/cases/iso_names.txt.
#include "locale/kept_names.h"
#include "support/cases.h"
#include "text/encoding/utf8.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

using namespace tvut;

namespace {

using Entry = std::map<std::string, std::string>; // attributes

std::vector<Entry> EntriesOf(const std::string& name, const std::string& element) {
    std::ifstream file("/usr/share/xml/iso-codes/" + name);
    std::stringstream text;
    text << file.rdbuf();
    const std::string all = text.str();
    const std::regex attribute("(\\w+)=\"([^\"]*)\"");
    std::vector<Entry> entries;
    for (std::size_t at = 0; (at = all.find("<" + element + "\n", at)) != all.npos;) {
        const std::size_t end = all.find("/>", at);
        const std::string inner = all.substr(at, end - at);
        Entry& entry = entries.emplace_back();
        for (std::sregex_iterator found(inner.begin(), inner.end(), attribute), last; found != last; ++found)
            entry[(*found)[1]] = (*found)[2];
        at = end;
    }
    return entries;
}

std::string Narrow(std::u16string_view text) {
    std::string bytes(longestUtf8 * text.size(), '\0');
    bytes.resize(UtilpEncodeUtf8(text, bytes.data()));
    return bytes;
}

class clsEnglishNames {
  public:
    clsEnglishNames() {
        for (const scCaseRow& row : CaseRows("iso_names", 3))
            differing_[NarrowCase(row[0])] = {Narrow(row[1]), Narrow(row[2])};
    }
    ~clsEnglishNames() {
        for (const auto& [code, names] : differing_)
            ADD_FAILURE() << code << " needs no row in iso_names.txt";
    }
    void Check(const std::string& code, const std::string& ours, Entry& entry) {
        if (("; " + entry["name"] + ";").find("; " + ours + ";") != std::string::npos ||
            ours == entry["common_name"])
            return;
        const auto row = differing_.find(code);
        if (row == differing_.end() || row->second != std::pair(ours, entry["name"]))
            ADD_FAILURE() << code << " => " << ours << " => " << entry["name"];
        else
            differing_.erase(row);
    }

  private:
    std::map<std::string, std::pair<std::string, std::string>> differing_;
};

template <class Characters>
std::string Text(const Characters& characters) {
    return {characters.begin(), characters.end()};
}

TEST(IsoCodes, AreTheSame) {
    clsEnglishNames englishNamesOf;
    const auto names = UtilpNamesOf(englishNames);
    TranslatedName name;
    std::size_t countries = 0, languages = 0;
    for (Entry& entry : EntriesOf("iso_3166-1.xml", "iso_3166_entry")) {
        const std::string code = entry["alpha_2_code"];
        const auto found = UtilpCountryOfCode({std::u16string(code.begin(), code.end())});
        ASSERT_TRUE(found) << code;
        EXPECT_EQ(Text(g_countries[*found].code3), entry["alpha_3_code"]);
        EXPECT_EQ(g_countries[*found].number, std::stoul(entry["numeric_code"])) << code;
        const std::size_t length = names->Country(*found, name);
        englishNamesOf.Check(code, Narrow({name.data(), length}), entry);
        ++countries;
    }
    EXPECT_EQ(countries + 1, countryCount) << "and Kosovo";
    for (Entry& entry : EntriesOf("iso_639-2.xml", "iso_639_entry")) {
        const std::string code = entry["iso_639_1_code"];
        if (code.empty())
            continue;
        const auto found = UtilpFindLanguage(std::u16string(code.begin(), code.end()));
        ASSERT_TRUE(found) << code;
        EXPECT_EQ(Text(g_languages[*found].code3), entry["iso_639_2T_code"]);
        const std::string bibliographic = entry["iso_639_2B_code"];
        EXPECT_EQ(UtilpFindLanguage(std::u16string(bibliographic.begin(), bibliographic.end())), found);
        const std::size_t length = names->Language(*found, name);
        englishNamesOf.Check(code, Narrow({name.data(), length}), entry);
        ++languages;
    }
    EXPECT_EQ(languages + 2, languageCount) << "and two in a second script";
}

TEST(IsoCodes, HaveTheCurrencies) {
    std::set<std::string> current;
    for (Entry& entry : EntriesOf("iso_4217.xml", "iso_4217_entry"))
        current.insert(entry["letter_code"]);
    for (const scCountry& country : g_countries)
        EXPECT_TRUE(country.currency[0] == '\0' || current.contains(Text(country.currency)))
            << Text(country.code2);
}

} // namespace
