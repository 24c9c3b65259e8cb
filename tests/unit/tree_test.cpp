// What the tree promises beyond the answers of a plain model, which fuzz/lists.cpp holds it against.
#include "prof/path.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>
#include <unordered_map>

using namespace tvut;

namespace {

std::u16string Number(unsigned number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

// Two names of one hash, which an index must tell apart by all their characters.
TEST(Tree, TellsNamesOfOneHashApart) {
    std::unordered_map<std::uint32_t, std::u16string> seen;
    std::u16string first, second;
    for (unsigned i = 0; first.empty() && i < 2'000'000; ++i) {
        second = u"one beginning " + Number(i);
        std::u16string& other = seen[scName(second).Key(EntryKind::item)];
        first = std::exchange(other, second);
    }
    ASSERT_FALSE(first.empty());
    for (const unsigned others : {0u, 500u}) { // without and with an index
        clsTree tree(true);
        for (unsigned i = 0; i < others; ++i)
            ProfpAppendItem(tree.Root(), Number(i), u"v");
        ProfpAppendItem(tree.Root(), first, u"1");
        EXPECT_EQ(ProfpFindItem(tree.Root(), second), nullptr);
        ProfpAppendItem(tree.Root(), second, u"2");
        EXPECT_EQ(ProfpFindItem(tree.Root(), first)->Value(), u"1");
        EXPECT_EQ(ProfpFindItem(tree.Root(), second)->Value(), u"2");
    }
}

TEST(Tree, ClosesGapsWhenAWalkEnds) {
    clsTree tree(true);
    for (unsigned i = 0; i < 2000; ++i)
        ProfpAppendItem(tree.Root(), u"n" + Number(i), u"v");
    {
        const clsTree::clsWalk walk(tree.Root());
        for (unsigned i = 0; i < 1990; ++i)
            ProfpRemove(tree.Root(), EntryKind::item, u"n" + Number(i));
        EXPECT_EQ(tree.Root().End(), 2000u);
    }
    EXPECT_EQ(tree.Root().End(), 10u);
    EXPECT_NE(ProfpFindItem(tree.Root(), u"n1995"), nullptr);
}

// Loading and saving them is shown by the unit test of the forms.
TEST(Tree, TakesAMillionListsInEachOther) {
    clsTree tree(true), other(false);
    clsItemList* list = &tree.Root();
    std::u16string begins, ends;
    for (int depth = 0; depth < 1'000'000; ++depth) {
        list = tree.AppendList(*list, scName(u"L"));
        begins += u"L{";
        ends += u"}";
    }
    other.Copy(other.Root(), tree.Root());
    EXPECT_TRUE(Describe(other.Root()) == begins + ends);
    ProfpRemove(tree.Root(), EntryKind::list, u"L");
    EXPECT_EQ(tree.Root().Count(), 0u);
}

} // namespace
