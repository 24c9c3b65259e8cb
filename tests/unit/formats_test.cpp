// Loading and saving in memory: round trips, the compressed wrapper, damaged and hostile input.
#include "prof/formats/compression.h"
#include "prof/path.h"
#include "support/cases.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>

using namespace tvut;
using namespace std::literals;

namespace {

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
    for (std::size_t at = 4; at < whole.size(); ++at) {
        for (const char flip : {'\x01', '\x80', '\xFF'}) {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(damaged[at] ^ flip);
            clsTree target(true); // bits that deflate never reads may differ
            EXPECT_TRUE(!Load(target, damaged).parsed || Saved(target) == Saved(tree)) << at;
        }
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

TEST(TextForm, IsReadByTheFirstCharacterOfEachLine) {
    for (const scCaseRow& row : CaseRows("forms/text", 2))
        EXPECT_EQ(Read(Utf16Bytes(u"\uFEFF" + row[0])), row[1]) << row.where;
    for (const scCaseRow& row : CaseRows("forms/plain_ini", 2))
        EXPECT_EQ(Read(Utf16Bytes(u"\uFEFF" + row[0]), ReadMode::plainIni), row[1]) << row.where;
}

// Everything that has a mark of its own, names and values of every length, and indentation: a tab for four
// levels, blanks for the rest.
TEST(TextForm, IsWrittenToTheByte) {
    clsTree tree(true);
    const auto written = [&] { return Saved(tree); };
    EXPECT_EQ(written(), Utf16Bytes(u"\uFEFF[/]\r\n{\r\n}\r\n"));
    tree.AppendItem(tree.Root(), scName(u"a=b[c]"), u"x=y[z]\r\n\t\x01\x1F\u2400");
    tree.AppendList(tree.Root(), scName(u"l=[m]\u2409"));
    EXPECT_EQ(written(),
              Utf16Bytes(u"\uFEFF[/]\r\n{\r\n a\u2338b\u301Ac\u301B=x=y[z]\u240D\u240A\u2409\u2401\u241F"
                         u"\u2400\r\n [l=[m]\u2409]\r\n {\r\n }\r\n}\r\n"));
    for (const std::size_t length : {0u, 1u, 255u, 256u, 257u, 4095u, 4096u, 4097u, 70000u}) {
        tree.Empty(tree.Root());
        const std::u16string text(length, u'\u263A');
        tree.AppendItem(tree.Root(), scName(text), text);
        EXPECT_EQ(written(), Utf16Bytes(u"\uFEFF[/]\r\n{\r\n " + text + u"=" + text + u"\r\n}\r\n"));
    }
    tree.Empty(tree.Root());
    std::u16string head = u"\uFEFF[/]\r\n{\r\n", tail = u"}\r\n";
    clsItemList* list = &tree.Root();
    for (const std::u16string indent : {u" ", u"  ", u"   ", u"\t", u"\t ", u"\t  ", u"\t   ", u"\t\t"}) {
        tree.AppendItem(*list, scName(u"i"), u"");
        list = tree.AppendList(*list, scName(u"L"));
        head += indent + u"i=\r\n" + indent + u"[L]\r\n" + indent + u"{\r\n";
        tail = indent + u"}\r\n" + tail;
    }
    EXPECT_EQ(written(), Utf16Bytes(head + tail));
}

} // namespace
