// The tree against a plain model: lists as simple sequences, every lookup a walk.
//
// Long lists get an index in the tree and none in the model, deletions leave gaps in the tree and
// none in the model; after any sequence of operations both must give the same answers.
#include "prof/path.h"
#include "prof/tree_walk.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <unordered_map>

using namespace tvut;

namespace {

struct scModelList;

struct scModelEntry {
    std::u16string name;
    std::u16string value;
    std::shared_ptr<scModelList> list; // none for an item
};

struct scModelList {
    std::vector<scModelEntry> entries;

    scModelEntry* Find(bool wantList, std::u16string_view name) {
        for (scModelEntry& entry : entries) {
            if (entry.name == name && (entry.list != nullptr) == wantList)
                return &entry;
        }
        return nullptr;
    }
    void Remove(bool lists, std::u16string_view name) {
        std::erase_if(entries, [&](const scModelEntry& entry) {
            return entry.name == name && (entry.list != nullptr) == lists;
        });
    }
    std::shared_ptr<scModelList> Copy() const {
        auto copy = std::make_shared<scModelList>(*this);
        for (scModelEntry& entry : copy->entries) {
            if (entry.list)
                entry.list = entry.list->Copy();
        }
        return copy;
    }
};

void Describe(const scModelList& list, std::u16string& text) {
    for (const scModelEntry& entry : list.entries) {
        text += entry.name + (entry.list ? u"{" : u"=" + entry.value + u";");
        if (entry.list) {
            Describe(*entry.list, text);
            text += u"}";
        }
    }
}

struct scDescriber {
    std::u16string text;
    void Item(const clsItem& item, std::uint32_t) {
        text.append(item.Name()).append(u"=").append(item.Value()).append(u";");
    }
    void BeginList(const clsItem& entry, std::uint32_t) { text.append(entry.Name()).append(u"{"); }
    void EndList(std::uint32_t) { text += u"}"; }
};

std::u16string Describe(const clsItemList& list) {
    scDescriber describer;
    ProfpWalk(list, 0, describer);
    return describer.text;
}

std::u16string Number(unsigned number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

// Applies the same random operations to a tree and a model.
class clsTwins {
  public:
    clsTwins(unsigned seed, bool pooling, unsigned names) : random_(seed), names_(names), tree(pooling) {}

    void Step() {
        const std::u16string name = u"n" + Number(Pick(names_));
        clsItemList* list = &tree.Root();
        scModelList* model = &root;
        if (Pick(4) == 0) { // go one list down, if there is one of that name
            const std::u16string_view sub = Pick(2) ? u"n0" : u"n1";
            scModelEntry* const entry = model->Find(true, sub);
            clsItemList* const found = list->FindList(scName(sub));
            ASSERT_EQ(entry != nullptr, found != nullptr);
            if (entry) {
                model = entry->list.get();
                list = found;
            }
        }
        Apply(*list, *model, name);
    }

    void CompareAll() {
        std::u16string expected;
        Describe(root, expected);
        ASSERT_EQ(Describe(tree.Root()), expected);
    }

  private:
    unsigned Pick(unsigned bound) { return static_cast<unsigned>(random_() % bound); }

    void Apply(clsItemList& list, scModelList& model, const std::u16string& name) {
        const std::u16string value = Number(Pick(100000));
        switch (Pick(12)) {
        case 0:
        case 1:
        case 2:
            ProfpAppendItem(list, name, value);
            model.entries.push_back({name, value, nullptr});
            break;
        case 3:
        case 4:
            ProfpSetItem(list, name, value);
            if (scModelEntry* const entry = model.Find(false, name))
                entry->value = value;
            else
                model.entries.push_back({name, value, nullptr});
            break;
        case 5:
            ProfpAppendList(list, name);
            model.entries.push_back({name, u"", std::make_shared<scModelList>()});
            break;
        case 6:
            ProfpRemove(list, EntryKind::item, name);
            model.Remove(false, name);
            break;
        case 7:
            if (Pick(3) == 0) {
                ProfpRemove(list, EntryKind::list, name);
                model.Remove(true, name);
            }
            break;
        case 8:
            RemoveOne(list, model);
            break;
        case 9:
            if (Pick(40) == 0)
                CopyInto(list, model);
            break;
        case 10:
            tree.RemoveFirstItem();
            RemoveFirstItem(root);
            break;
        default:
            Compare(list, model, name);
        }
    }

    static bool RemoveFirstItem(scModelList& list) {
        for (auto entry = list.entries.begin(); entry != list.entries.end(); ++entry) {
            if (!entry->list)
                return list.entries.erase(entry), true;
            if (RemoveFirstItem(*entry->list))
                return true;
        }
        return false;
    }

    // Deletes one list by its handle, as the model deletes one entry by its place.
    void RemoveOne(clsItemList& list, scModelList& model) {
        if (model.entries.empty())
            return;
        const unsigned at = Pick(static_cast<unsigned>(model.entries.size()));
        if (!model.entries[at].list)
            return;
        std::uint32_t position = 0;
        for (unsigned left = at;; ++position) {
            if (!list.At(position).IsGap() && left-- == 0)
                break;
        }
        ProfpRemoveList(*list.At(position).subList);
        model.entries.erase(model.entries.begin() + at);
    }

    void CopyInto(clsItemList& list, scModelList& model) {
        if (root.entries.size() > 2000)
            return;
        const std::shared_ptr<scModelList> copy = root.Copy(); // before the copies are appended
        model.entries.insert(model.entries.end(), copy->entries.begin(), copy->entries.end());
        tree.Copy(list, tree.Root());
    }

    void Compare(clsItemList& list, scModelList& model, const std::u16string& name) {
        const clsItem* const item = ProfpFindItem(list, name);
        const scModelEntry* const expected = model.Find(false, name);
        ASSERT_EQ(item != nullptr, expected != nullptr);
        if (item) {
            ASSERT_EQ(item->Value(), expected->value);
        }
        ASSERT_EQ(list.FindList(scName(name)) != nullptr, model.Find(true, name) != nullptr);
        ASSERT_EQ(list.Count(), model.entries.size());
    }

    std::mt19937 random_;
    unsigned names_;

  public:
    clsTree tree;
    scModelList root;
};

TEST(Tree, GivesTheAnswersOfAPlainWalk) {
    struct scCase {
        unsigned steps, names;
        bool pooling;
    };
    // Few names: many repetitions. Many names: long lists, mostly unique.
    for (const scCase& c :
         {scCase{4000, 5, true}, {4000, 60, true}, {8000, 2000, true}, {8000, 2000, false}}) {
        for (unsigned seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(::testing::Message() << "names " << c.names << " seed " << seed);
            clsTwins twins(seed, c.pooling, c.names);
            for (unsigned step = 0; step < c.steps && !::testing::Test::HasFatalFailure(); ++step)
                twins.Step();
            twins.CompareAll();
        }
    }
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

TEST(Tree, KeepsPositionsDuringAWalk) {
    clsTree tree(true);
    for (unsigned i = 0; i < 200; ++i)
        ProfpAppendItem(tree.Root(), u"n" + Number(i), u"v");
    const clsTree::clsWalk walk(tree.Root());
    for (unsigned i = 0; i < 150; ++i)
        ProfpRemove(tree.Root(), EntryKind::item, u"n" + Number(i));
    ASSERT_NE(walk.List(), nullptr);
    EXPECT_EQ(walk.List()->At(160).Name(), u"n160");
    tree.Empty(tree.Root());
    EXPECT_EQ(walk.List(), nullptr);
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

TEST(Tree, WalksAMillionListsWithoutStack) {
    constexpr unsigned depth = 1'000'000;
    clsTree tree(true);
    clsItemList* list = &tree.Root();
    for (unsigned i = 0; i < depth; ++i)
        list = tree.AppendList(*list, scName(u"L"));
    tree.AppendItem(*list, scName(u"bottom"), u"1");

    clsTree other(false);
    other.Copy(other.Root(), tree.Root());
    struct scCount {
        unsigned items = 0, lists = 0, deepest = 0;
        void Item(const clsItem&, std::uint32_t level) {
            ++items;
            deepest = std::max(deepest, level);
        }
        void BeginList(const clsItem&, std::uint32_t) { ++lists; }
        void EndList(std::uint32_t) {}
    } count;
    ProfpWalk(other.Root(), 0, count);
    EXPECT_EQ(count.items, 1u);
    EXPECT_EQ(count.lists, depth);
    EXPECT_EQ(count.deepest, depth);

    EXPECT_EQ(Saved(tree), "cannot be saved"); // hundreds of gigabytes of indentation
    ProfpRemove(tree.Root(), EntryKind::list, u"L");
    EXPECT_EQ(tree.Root().Count(), 0u);
}

} // namespace
