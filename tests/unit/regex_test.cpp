// clsRegEx: what the syntax means, what is said of a bad pattern, and that no pattern hangs.
#include "support/cases.h"
#include "text/regex/regex.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>

namespace tvut {
namespace {

using Text = std::u16string;

// Shows each match in angle brackets with its groups; ~ is a group that took no part.
struct scShow final : IclsRegExGSubCB {
    void Replace(const clsRegExMatchList& match, Text& result) override {
        result += u'<';
        for (std::size_t group = 0; group < match.Count(); ++group) {
            result += group != 0 ? u"," : u"";
            result += match.Has(group) ? match.Text(group) : u"~";
        }
        result += u'>';
    }
};

Text Shown(std::u16string_view pattern, std::u16string_view text) {
    scShow show;
    Text result;
    clsRegEx(pattern).GSub(text, show, result);
    return result;
}

TEST(RegEx, MatchesAsPerlDoes) {
    for (const scCaseRow& row : CaseRows("regex/matches", 3))
        EXPECT_EQ(Shown(row[0], row[1]), row[2]) << row.where;
    EXPECT_TRUE(clsRegEx(u"^\\x41\\x{20AC}\\t\\cA\\e\\012$").Matches(u"A\u20AC\t\x01\x1B\n"));
}

// The literal and run searches take other ways in long texts than in short ones.
TEST(RegEx, FindsInLongTexts) {
    for (std::size_t before = 0; before < 300; before += 7) {
        const Text text = Text(before, u'.') + u"<!--" + Text(before, u'-') + u">-->" + Text(40, u'>');
        clsRegExMatchList match;
        ASSERT_TRUE(clsRegEx(u"<!--(.*?)-->").Match(text, match));
        EXPECT_EQ(match[0].start, before);
        EXPECT_EQ(match[1].length, before >= 2 ? before - 2 : 1);
        ASSERT_TRUE(clsRegEx(u"^(.*)-([^-]*)>").Match(text, match));
        EXPECT_EQ(match[1].length, text.size() - 42);
        ASSERT_TRUE(clsRegEx(u"[^-]*?-(?=>)").Match(text, match, before + 4));
        EXPECT_EQ(clsRegEx(u"\\d").Match(text, match), false);
    }
}

TEST(RegEx, ReportsABadPattern) {
    for (const scCaseRow& row : CaseRows("regex/bad_patterns", 2)) {
        DiagnosticLines().clear();
        try {
            const clsRegEx accepted(row[0]);
            ADD_FAILURE() << row.where;
        } catch (const clsRegExError& error) {
            EXPECT_EQ(std::to_string(error.Offset()), NarrowCase(row[1])) << row.where << error.what();
        }
    }
    EXPECT_EQ(DiagnosticLines(), std::vector<Text>{u"Error in RegEx offset 2: '[\\q]'"});
    const Text deep = Text(100000, u'(');
    EXPECT_THROW(clsRegEx{deep}, clsRegExError);
}

TEST(RegEx, TellsTheUnitsOfALargeClass) {
    Text pattern = u"[";
    for (char16_t unit = 0x3001; unit < 0x3081; unit += 2)
        pattern += unit;
    const clsRegEx odd(pattern + u"]");
    for (char16_t unit = 0x2FF0; unit < 0x3090; ++unit)
        EXPECT_EQ(odd.Matches(Text(1, unit)), unit > 0x3000 && unit < 0x3081 && unit % 2 != 0) << int{unit};
}

// None of these may hang, overflow the stack or take memory without end.
TEST(RegEx, GivesUpOnWhatTakesForEver) {
    const Text as(3000, u'a');
    for (const char16_t* pattern :
         {u"(a*)*b", u"(?:a+)+b", u"^(\\w+\\s?)*\\z!", u"(x+x+)+y|(a?){3000}a{3000}b"})
        EXPECT_THROW(clsRegEx(pattern).Matches(as), clsRegExTooComplex)
            << ::testing::PrintToString(Text(pattern));
    const Text million(1000000, u'a');
    EXPECT_TRUE(clsRegEx(u"^(?:a|b)*$").Matches(million));
    EXPECT_TRUE(clsRegEx(u"^(?:a|b)*?$").Matches(million));
    EXPECT_TRUE(clsRegEx(u"^.*.*a$").Matches(million));
    EXPECT_THROW(clsRegEx(u"^(a|b)*$").Matches(Text(4000000, u'a')), clsRegExTooComplex);
    EXPECT_THROW(clsRegEx(u"((a{0,1000}){0,1000}){0,1000}b").Matches(as), clsRegExTooComplex);
    const Text longLiteral = Text(40000, u'a') + u"b" + Text(40000, u'a');
    EXPECT_THROW(clsRegEx(longLiteral).Matches(million), clsRegExTooComplex);
    const Text nearlyLongRun = Text(59999, u'a') + u"b" + Text(59999, u'a');
    EXPECT_THROW(clsRegEx(u"a{60000}?c").Matches(nearlyLongRun), clsRegExTooComplex);
    EXPECT_TRUE(clsRegEx(u"^(a+)\\1b").Matches(Text(20000, u'a') + u"b")); // not too much for anyone
    Text groups = u"[a]b";
    for (int i = 0; i < 30000; ++i)
        groups += u"()";
    EXPECT_FALSE(clsRegEx(groups).Matches(million));
}

} // namespace
} // namespace tvut
