// Names of files: which ones may be, patterns of them, and names made of any text.
#include "files/file_name.h"
#include "files/file_pattern.h"
#include "support/cases.h"
#include "unit/file_name_patterns.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace tvut;

namespace {

void CheckName(const std::u16string& name) {
    ASSERT_STREQ(FaultOfChecks(name), nullptr) << testing::PrintToString(name);
}

TEST(FileNames, AreWhatThePatternsSay) {
    const std::u16string_view parts[] = {u"con", u"CoN", u"PRN", u"aux",  u"nul", u"COM",    u"lpt",  u"1",
                                         u"0",   u".",   u" ",   u":",    u"\\",  u"/",      u"in$",  u"out$",
                                         u"a",   u"\n",  u"?",   u"\xB2", u"|",   u"\u20AC", u"\x1F", u"9"};
    std::mt19937 random(1);
    int names = 0;
    for (int i = 0; i < 40000; ++i) {
        std::u16string name;
        for (unsigned count = random() % 7; count != 0; --count)
            name += parts[random() % std::size(parts)];
        CheckName(name);
        names += UtilpIsBareFileName(name);
    }
    EXPECT_GT(names, 2000);
}

TEST(FileNames, AreTheSameForEveryCharacter) {
    for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
        for (std::u16string name : {u"?", u"?a", u"co?", u"com?", u"LPT?.x", u"con?", u"a.?"}) {
            name[name.find(u'?')] = static_cast<char16_t>(unit);
            CheckName(name);
        }
    }
}

TEST(FileNames, OfPathsAreTheirLastComponents) {
    for (const scCaseRow& row : CaseRows("names/paths", 2))
        EXPECT_EQ(UtilpIsFileName(row[0]), row[1] == u"true") << row.where;
}

TEST(FilePatterns, StandInLists) {
    for (const auto& [list, patterns] : {std::pair{u"", u""},
                                         {u" ; ;", u""},
                                         {u";a", u"a|"},
                                         {u" a b.txt ;;C:\\x y\\*.log;", u"a b.txt|C:\\x y\\*.log|"}}) {
        std::u16string found;
        std::u16string_view rest = list;
        for (auto next = UtilpTakeFilePattern(rest); !next.empty(); next = UtilpTakeFilePattern(rest))
            found.append(next).append(u"|");
        EXPECT_EQ(found, patterns);
    }
    EXPECT_EQ(scFilePattern(u"C:a?").folder, u"C:");
    EXPECT_EQ(scFilePattern(u"x/y\\a").folder, u"x/y\\");
    EXPECT_EQ(scFilePattern(u"a").folder, u"");
}

TEST(FilePatterns, MatchNames) {
    for (const scCaseRow& row : CaseRows("names/patterns", 3)) {
        EXPECT_TRUE(UtilpMatchesPattern(row[1], row[0])) << row.where;
        EXPECT_TRUE(row[2].empty() || !UtilpMatchesPattern(row[2], row[0])) << row.where;
    }
}

} // namespace
