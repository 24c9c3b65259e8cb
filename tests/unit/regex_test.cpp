// clsRegEx: what the syntax means, what a bad pattern is told, and that no pattern hangs.
#include "text/regex/regex.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>

#include <random>

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

struct scCase {
    const char16_t* pattern;
    const char16_t* text;
    const char16_t* shown;
};

TEST(RegEx, MatchesAsPerlDoes) {
    const scCase cases[] = {
        // characters, classes, escapes
        {u"a.c", u"abc a\nc", u"<abc> a\nc"},
        {u"(?s)a.c", u"a\nc", u"<a\nc>"},
        {u"[]a-c^-]+", u"x]b^-d", u"x<]b^->d"},
        {u"[^\\d\\s]+", u"1ab 2", u"1<ab> 2"},
        {u"\\h+", u"a\t\u00A0\u2000\u200A\u3000\nb", u"a<\t\u00A0\u2000\u200A\u3000>\nb"},
        {u"\\w+\\W\\D\\S", u"ab_9 xy", u"<ab_9 xy>"},
        {u"[\\b\\x00-\\x1F]", u"a\x08z\x1F", u"a<\x08>z<\x1F>"},
        {u"a{,2}{b}x{1,2", u"a{,2}{b}x{1,2", u"<a{,2}{b}x{1,2>"},
        {u"\\.\\*\\\\", u".*\\", u"<.*\\>"},
        {u"[a-\\d]+[[:]", u"b-1a[", u"b<-1a[>"},
        // quantifiers
        {u"a*", u"baac", u"<>b<aa><>c<>"},
        {u"<.+?>", u"<a><b>", u"<<a>><<b>>"},
        {u"a{2}", u"aaaaa", u"<aa><aa>a"},
        {u"a{2,3}?", u"aaaaa", u"<aa><aa>a"},
        {u"(ab){2,}", u"ababab", u"<ababab,ab>"},
        {u"(?:a|ab)(?:c|bcd)(d*)", u"abcd", u"<abcd,>"},
        {u"a++ab|x?+x", u"aaab", u"aaab"},
        {u"(a|b)*?c", u"abc", u"<abc,b>"},
        {u"(a*)*b", u"aab", u"<aab,>"},
        {u"(?:a?){3}b", u"aab", u"<aab>"},
        {u"x{0}y", u"xy", u"x<y>"},
        // groups, alternatives, back-references
        {u"(a)|(b)", u"ab", u"<a,a,~><b,~,b>"},
        {u"(.)(.)\\2\\1", u"xabba", u"x<abba,a,b>"},
        {u"(?i)(a)\\1", u"aA", u"<aA,a>"},
        {u"(?>a*)a|b", u"aab", u"aa<b>"},
        {u"|a", u"a", u"<><a><>"},
        {u"((a)|b)+", u"ab", u"<ab,b,a>"},
        // places
        {u"^a|b$", u"aab\n", u"<a>a<b>\n"},
        {u"(?m)^.", u"ab\ncd\n", u"<a>b\n<c>d\n"},
        {u"(?m).$", u"ab\ncd", u"a<b>\nc<d>"},
        {u"\\Aa|b\\z|b\\Z", u"ab\n", u"<a><b>\n"},
        {u"\\bis\\B", u"is isle this", u"is <is>le this"},
        // assertions
        {u"a(?=b)", u"abac", u"<a>bac"},
        {u"a(?!b)", u"abac", u"ab<a>c"},
        {u"(?<=a|bb)c", u"acbcbbc", u"a<c>bcbb<c>"},
        {u"(?<!a)c", u"acbc", u"acb<c>"},
        {u"(?=(a+))a*b\\1", u"baaabac", u"baa<aba,a>c"},
        // modes
        {u"(?i)straSSe\u00C4\u0416", u"STRAsse\u00E4\u0436", u"<STRAsse\u00E4\u0436>"},
        {u"a(?i)b|c", u"aBC", u"<aB><C>"},
        {u"a(?i:b)c", u"aBcaBC", u"<aBc>aBC"},
        {u"(?i)\u0178\u021A\u01A0[\u00FF-\u0100]", u"\u00FF\u021B\u01A1\u0178",
         u"<\u00FF\u021B\u01A1\u0178>"},
        {u"(?i)[^a-c]+", u"ABCDx", u"ABC<Dx>"},
        {u"(?x) a b # comment\n [ ] \\ c", u"ab  c", u"<ab  c>"},
        {u"(?i-i)a(?#comment)b", u"AB ab", u"AB <ab>"},
    };
    for (const scCase& c : cases)
        EXPECT_EQ(Shown(c.pattern, c.text), Text(c.shown)) << ::testing::PrintToString(Text(c.pattern));
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
    const struct {
        const char16_t* pattern;
        std::size_t offset;
    } cases[] = {{u"a(b", 1},
                 {u"ab)", 2},
                 {u"[a", 0},
                 {u"*a", 0},
                 {u"a**", 2},
                 {u"a{2,1}", 1},
                 {u"a{70000}", 1},
                 {u"\\", 1},
                 {u"(?<n>a)", 0},
                 {u"(?k)", 0},
                 {u"\\q", 0},
                 {u"(a)\\2", 3},
                 {u"a{99999999999}", 1},
                 {u"a\\4294967297", 1},
                 {u"[z-a]", 1},
                 {u"[[:alpha:]]", 1},
                 {u"\\x{}", 3},
                 {u"(?<=a*)b", 4},
                 {u"(?#a", 0},
                 {u"[\\q]", 2}};
    for (const auto& c : cases) {
        DiagnosticLines().clear();
        try {
            const clsRegEx accepted(c.pattern);
            ADD_FAILURE() << ::testing::PrintToString(Text(c.pattern));
        } catch (const clsRegExError& error) {
            EXPECT_EQ(error.Offset(), c.offset) << ::testing::PrintToString(Text(c.pattern)) << error.what();
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
