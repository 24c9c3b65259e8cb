// What embedded files and variants rest on: names that may come out of a profile, file patterns, the
// bytes of variants.
#include "prof/file_name.h"
#include "prof/file_pattern.h"
#include "prof/variant_layout.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>

using namespace tvut;

namespace {

std::string Shown(std::u16string_view text) {
    return {text.begin(), text.end()};
}

TEST(BareFileNames, NeverLeaveTheirFolder) {
    for (const char16_t* good :
         {u"a", u".profile", u"a b.txt", u" a", u"..a", u"a..b", u"con1.txt", u"COM0", u"COM10", u"nulls",
          u"console.log", u"\u00FC\u65E5.txt", u"a;b", u"~", u"CONIN"})
        EXPECT_TRUE(ProfpIsBareFileName(good)) << Shown(good);
    for (const char16_t* bad : {u"",
                                u".",
                                u"..",
                                u"...",
                                u"..\\a",
                                u"../a",
                                u"a/b",
                                u"a\\b",
                                u"\\a",
                                u"/a",
                                u"\\\\server\\share\\a",
                                u"\\\\?\\C:\\a",
                                u"C:",
                                u"C:a",
                                u"C:\\a",
                                u"a:stream",
                                u"a::$DATA",
                                u"a.",
                                u"a ",
                                u"a. .",
                                u"a\n",
                                u"a\u0001",
                                u"a*",
                                u"a?",
                                u"a|b",
                                u"a<",
                                u"a>",
                                u"a\"",
                                u"con",
                                u"NUL.txt",
                                u"Aux.tar.gz",
                                u"PRN .txt",
                                u"lpt9",
                                u"com1.a.b",
                                u"COM\u00B9",
                                u"LPT\u00B3.txt",
                                u"conin$",
                                u"CONOUT$.x",
                                u"nul  .a"})
        EXPECT_FALSE(ProfpIsBareFileName(bad)) << Shown(bad);
    EXPECT_FALSE(ProfpIsBareFileName(std::u16string_view(u"a.txt\0..\\b", 10)));
}

TEST(FilePatterns, StandInLists) {
    const struct {
        std::u16string_view list;
        std::vector<std::u16string> patterns;
    } rows[] = {
        {u"", {}},       {u" ; ;", {}},
        {u"a", {u"a"}},  {u" a b.txt ;;C:\\x y\\*.log;", {u"a b.txt", u"C:\\x y\\*.log"}},
        {u";a", {u"a"}},
    };
    for (const auto& row : rows) {
        std::vector<std::u16string> found;
        std::u16string_view rest = row.list;
        for (auto next = ProfpTakeFilePattern(rest); !next.empty(); next = ProfpTakeFilePattern(rest))
            found.emplace_back(next);
        EXPECT_EQ(found, row.patterns) << Shown(row.list);
    }
    EXPECT_EQ(scFilePattern(u"C:a?").folder, u"C:");
    EXPECT_EQ(scFilePattern(u"x/y\\a").folder, u"x/y\\");
    EXPECT_EQ(scFilePattern(u"a").folder, u"");
}

TEST(FilePatterns, MatchNames) {
    const struct {
        std::u16string_view pattern, matching, other;
    } rows[] = {
        {u"*", u"a.b", u""},      {u"*.*", u"none", u""},        {u"*.log", u"a.LOG", u"z.logx"},
        {u"a?c", u"abc", u"ac"},  {u"A*B*c", u"aXbYbZc", u"ab"}, {u"*a*a*", u"banana", u"bn"},
        {u"???", u"a.b", u"ab"},  {u"**a", u"a", u"b"},          {u"a*", u"a", u"ba"},
        {u"x.*", u"x.y.z", u"x"}, {u"name", u"NAME", u"names"},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(ProfpMatchesPattern(row.matching, row.pattern)) << Shown(row.pattern);
        EXPECT_TRUE(row.other.empty() || !ProfpMatchesPattern(row.other, row.pattern)) << Shown(row.pattern);
    }
}

// ---- Variants -----------------------------------------------------------------------------------

std::string FromHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += hex[i] == ' ' ? 1 : 2) {
        if (hex[i] != ' ')
            bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    }
    return bytes;
}

bool Reads(std::string_view bytes, clsVariantWriter& again) {
    try {
        ProfpReadVariant(bytes, again);
        return true;
    } catch (const clsException&) {
        return false;
    }
}

// One of each kind; stored profiles hold such bytes.
constexpr std::string_view stored[] = {
    "01 0000",                                // empty
    "01 0100",                                // null
    "01 0300 2A000000",                       // Int32 42
    "01 0800 04000000 61006200",              // text "ab"
    "01 0800 FFFFFFFF",                       // null text
    "01 0D00 00",                             // null interface
    "01 0E00 0280 00000000 7B00000000000000", // decimal -1.23
    "01 0320 0000",                           // no array
    "01 0220 0200 02000000 00000000 02000000 FFFFFFFF 0100 0200 0300 0400",
    "01 0820 0100 02000000 01000000 00000000 FFFFFFFF",
    "01 0920 0100 02000000 00000000 00 00",
    "01 0C20 0100 02000000 00000000 0000 0C20 0100 01000000 00000000 0B00 FFFF",
    "01 0C20 0100 00000000 05000000",
};

TEST(Variants, ReadAsTheyWereWrittenAndNotWhenCutOrLengthened) {
    for (const std::string_view hex : stored) {
        const std::string bytes = FromHex(hex);
        clsVariantWriter again;
        ASSERT_TRUE(Reads(bytes, again)) << hex;
        EXPECT_EQ(again.Bytes(), bytes) << hex;
        for (std::size_t length = 0; length < bytes.size(); ++length)
            EXPECT_FALSE(Reads(std::string_view(bytes).substr(0, length), again))
                << hex << " cut at " << length;
        EXPECT_FALSE(Reads(bytes + '\0', again)) << hex;
    }
}

TEST(Variants, ThatNobodyWroteAreRefusedBeforeAnythingIsMade) {
    for (const std::string_view hex : {
             "00 0000",
             "02 0000", // another layout
             "01 0C00",
             "01 0F00",
             "01 2400",
             "01 0340 00000000",
             "01 0D00 01",
             "01 0E00 1D00 00000000 0000000000000000", // decimal of scale 29
             "01 0E00 0001 00000000 0000000000000000", // of an unknown sign
             "01 0020 0100 00000000 00000000",
             "01 0120 0000",
             "01 2420 0000",
             "01 0320 4100",
             "01 1120 0100 FFFFFFFF 00000000 00", // counts that the bytes do not hold
             "01 1120 0200 00000100 00000000 00000100 00000000 00",
             "01 0C20 0100 02000000 00000000 0000",
             "01 0820 0100 01000000 00000000 05000000 00",
         }) {
        clsVariantWriter written;
        EXPECT_FALSE(Reads(FromHex(hex), written)) << hex;
    }
    const std::string level = FromHex("0C20 0100 01000000 00000000");
    for (const std::size_t depth : {deepestVariant, deepestVariant + 1, std::size_t{1} << 20}) {
        std::string nested(1, '\1');
        for (std::size_t i = 0; i < depth; ++i)
            nested += level;
        clsVariantWriter written;
        EXPECT_EQ(Reads(nested + FromHex("0000"), written), depth == deepestVariant) << depth;
    }
}

} // namespace
