// Loading and saving in memory: round trips, the compressed wrapper, damaged and hostile input.
#include "prof/formats/compression.h"
#include "prof/path.h"
#include "unit/native_platform.h"
#include "unit/random_tree.h"

#include <gtest/gtest.h>

using namespace tvut;
using namespace std::literals;

namespace {

TEST(TextForm, RoundTripsEveryText) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        clsTree tree(true);
        GrowTree(tree, seed, everyKindOfCharacter);
        for (const std::uint32_t flags : {0x00u, 0x40u}) {
            clsTree again(true);
            EXPECT_TRUE(Load(again, Saved(tree, flags)).parsed);
            EXPECT_EQ(Saved(again), Saved(tree));
        }
    }
}

TEST(Save, MeasuresExactlyWhatItWrites) {
    clsTree tree(true);
    GrowTree(tree, 99, everyKindOfCharacter);
    for (const std::uint32_t form : {0u, 1u, 2u}) {
        clsMemorySink sink;
        ASSERT_TRUE(ProfpSave(tree.Root(), form, false, sink));
        EXPECT_EQ(sink.extended, sink.bytes.size()) << form;
        EXPECT_TRUE(sink.finished);
    }
}

// A sink that fails after any number of bytes makes the save fail, never finish.
TEST(Save, ReportsAFullSink) {
    clsTree tree(true);
    GrowTree(tree, 3, everyKindOfCharacter);
    for (const std::uint32_t form : {0u, 1u, 2u}) {
        const std::size_t size = Saved(tree, form).size();
        for (const std::size_t room : {std::size_t{0}, std::size_t{1}, size / 2, size - 1}) {
            clsMemorySink sink(room);
            EXPECT_THROW(ProfpSave(tree.Root(), form, false, sink), clsException);
            EXPECT_FALSE(sink.finished);
        }
    }
}

// Cut anywhere or with any byte changed, an input loads or fails; the sanitizers watch.
TEST(Load, SurvivesDamage) {
    clsTree tree(true);
    ProfpAppendItem(tree.Root(), u"A/B/name", u"value\r\n");
    ProfpAppendItem(tree.Root(), u"A/other=", u"(1,2,3,4)");
    for (const std::uint32_t flags : {0x00u, 0x40u, 0x01u, 0x02u}) {
        const std::string whole = Saved(tree, flags);
        for (std::size_t cut = 0; cut < whole.size(); ++cut) {
            clsTree target(true);
            Load(target, std::string_view(whole).substr(0, cut), ReadMode::foreignXfdf);
            for (const char change : {'\0', '\xFF', '\n', '{', '<', '"'}) {
                std::string damaged = whole;
                damaged[cut] = change;
                for (const ReadMode mode : {ReadMode::detect, ReadMode::foreignXfdf}) {
                    clsTree other(false);
                    Load(other, damaged, mode);
                }
            }
        }
    }
}

TEST(Compressed, RefusesWhatIsDamagedCutOffOrTooLarge) {
    clsTree tree(true);
    ProfpAppendItem(tree.Root(), u"name", std::u16string(5000, u'x'));
    const std::string whole = Saved(tree, 0x40);
    for (std::size_t cut = 4; cut < whole.size(); ++cut) {
        clsTree target(true);
        const scLoadResult result = Load(target, std::string_view(whole).substr(0, cut));
        EXPECT_FALSE(result.parsed) << cut;
        EXPECT_EQ(target.Root().Count(), 0u);
    }
    EXPECT_THROW(ProfpInflate(whole, 1000), clsException);
    EXPECT_EQ(ProfpInflate(whole, 20000).Bytes(), Saved(tree));
}

TEST(Compressed, ReadsAWrapperInAWrapperButNotWithoutEnd) {
    clsTree tree(true);
    ProfpAppendItem(tree.Root(), u"name", u"value");
    std::string bytes = Saved(tree);
    for (int depth = 1; depth <= 6; ++depth) {
        clsMemorySink sink;
        clsCompressingSink wrapper(sink);
        wrapper.Extend(bytes.size());
        wrapper.Write(bytes.data(), bytes.size());
        wrapper.Finish();
        bytes = sink.bytes;
        clsTree target(true);
        EXPECT_EQ(Load(target, bytes).parsed, depth <= 4) << depth;
    }
}

TEST(Load, NamesInputMessageAndLine) {
    DiagnosticLines().clear();
    clsTree tree(true);
    EXPECT_FALSE(Load(tree, "\n\n<?xml\n\nx").parsed);
    const std::vector<std::u16string> expected{u"PROF load error line 2: 'prof::xml: bad format'",
                                               u"input: error 'prof::xml: bad format' in line 2"};
    EXPECT_EQ(DiagnosticLines(), expected);
}

TEST(TextForm, MakesALostZeroVisible) {
    for (const std::u16string_view text : {u"\uFEFF[/]\n{\na\0b=x\0y\n}\n"sv, u"[/]\n{\na\0b=x\0y\n}\n"sv}) {
        clsTree tree(true);
        ASSERT_TRUE(Load(tree, Utf16Bytes(text)).parsed);
        ASSERT_NE(ProfpFindItem(tree.Root(), u"a\u2400b"), nullptr);
        clsTree again(true);
        Load(again, Saved(tree));
        EXPECT_EQ(Saved(again), Saved(tree));
    }
}

TEST(TextForm, KeepsSectionsBehindTheRootApart) {
    clsTree tree(true);
    Load(tree, "[/]\n{\na=1\n}\nskipped\n[T]\n{\nb=2\n}\n}\n[/]\nc=3\n");
    EXPECT_NE(ProfpFindItem(tree.Root(), u"a"), nullptr);
    EXPECT_NE(ProfpFindItem(tree.Root(), u"T/b"), nullptr);
    EXPECT_NE(ProfpFindItem(tree.Root(), u"c"), nullptr);
    EXPECT_EQ(tree.Root().Count(), 3u);
}

TEST(PlainIni, KeepsSectionsFlatAndValuesAsTheyAre) {
    clsTree tree(true);
    ASSERT_TRUE(Load(tree,
                     "; head\nfree = 1\n[One]\na = \"x\" ; not a comment\n}\n[Two] trailing\nb=\n c = \n",
                     ReadMode::plainIni)
                    .parsed);
    clsItemList& root = tree.Root();
    EXPECT_EQ(ProfpFindItem(root, u"free")->Value(), u"1");
    EXPECT_EQ(ProfpFindItem(root, u"One/a")->Value(), u"\"x\" ; not a comment");
    EXPECT_NE(ProfpFindItem(root, u"One/}"), nullptr);
    EXPECT_EQ(ProfpFindItem(root, u"Two/b")->Value(), u"");
    EXPECT_EQ(ProfpFindItem(root, u"Two/c")->Value(), u"");
}

} // namespace
