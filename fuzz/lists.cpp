// Operations on lists, with walks and copies among them, against a model that is nothing but sequences.
//
// The bytes are a program for two profiles at a time. Each operation is applied to the tree and to the model,
// and what it answers is compared at once; the whole trees are compared in the end. Walks begin, go on while
// other operations change what they walk, and end in any order. Handles of lists are kept when the list is
// long gone, and addresses are made up: the tree must tell them from its lists.
#include "choices.h"
#include "require.h"

#include "prof/path.h"
#include "prof/tree_walk.h"
#include "unit/native_platform.h"

#include <map>
#include <memory>
#include <set>
#include <span>

using namespace tvut;

namespace {

struct scNode;
using Node = std::shared_ptr<scNode>;
using Names = std::vector<std::u16string>; // a path's segments
using Path = std::span<const std::u16string>;

// An entry of a list; one with a handle is a list itself.
struct scNode {
    std::u16string name, value;
    clsItemList* handle = nullptr;
    scNode* parent = nullptr;
    std::vector<Node> entries{};
    bool isThere = true;
    unsigned emptied = 0; // how often

    bool Is(bool isList, std::u16string_view wanted) const {
        return name == wanted && (handle != nullptr) == isList;
    }
    scNode* First(bool isList, std::u16string_view wanted) const {
        const auto found = std::ranges::find_if(entries, [&](auto& e) { return e->Is(isList, wanted); });
        return found == entries.end() ? nullptr : found->get();
    }
    // Whatever is found by a path, or null.
    const scNode* Follow(Path path, bool isList) const {
        const scNode* const first = First(path.size() > 1 || isList, path.front());
        return first && path.size() > 1 ? first->Follow(path.subspan(1), isList) : first;
    }
};

// An entry and what stands for it in the tree are alike.
void RequireAlike(const clsItem& entry, const scNode& expected) {
    Require(entry.Name() == expected.name && entry.IsList() == (expected.handle != nullptr));
    Require(entry.IsList() ? entry.subList == expected.handle : entry.Value() == expected.value);
}

void Compare(const scNode& list) {
    Require(list.handle->Count() == list.entries.size());
    std::uint32_t position = 0;
    for (const Node& expected : list.entries) {
        while (list.handle->At(position).IsGap())
            ++position;
        RequireAlike(list.handle->At(position++), *expected);
        if (!expected->handle)
            continue;
        Require(expected->handle->Parent() == list.handle);
        Compare(*expected);
    }
}

// A walk as an enumeration of a caller does it, and what it must come by.
class clsWalkTwins {
  public:
    explicit clsWalkTwins(scNode& list)
        : walk_(*list.handle), end_(list.handle->End()), list_(list), emptied_(list.emptied),
          entries_(list.entries) {}

    // One entry further. False at the end.
    bool Step() {
        const bool mayGoOn = list_.isThere && list_.emptied == emptied_;
        Require((walk_.List() != nullptr) == mayGoOn);
        if (!mayGoOn)
            return false;
        while (next_ < entries_.size() && !entries_[next_]->isThere)
            ++next_;
        while (position_ < end_ && walk_.List()->At(position_).IsGap())
            ++position_;
        Require((next_ == entries_.size()) == (position_ == end_));
        if (position_ == end_)
            return false;
        RequireAlike(walk_.List()->At(position_++), *entries_[next_++]);
        return true;
    }

  private:
    clsTree::clsWalk walk_;
    std::uint32_t end_, position_ = 0;
    scNode& list_;
    unsigned emptied_;
    std::vector<Node> entries_;
    std::size_t next_ = 0;
};

// A tree and its model, whose functions change the model.
struct scTwins {
    explicit scTwins(bool pooling) : tree(pooling) { lists[root.handle = &tree.Root()] = &root; }

    scNode& Append(scNode& list, std::u16string name, std::u16string value, clsItemList* handle = nullptr) {
        list.entries.push_back(
            std::make_shared<scNode>(scNode{std::move(name), std::move(value), handle, &list}));
        ++size;
        if (handle) {
            lists[handle] = list.entries.back().get();
            gone.erase(handle);
        }
        return *list.entries.back();
    }
    // The list that all of a path but its end leads to, made where it is missing.
    scNode& ParentOf(scNode& list, Path path) {
        if (path.size() == 1)
            return list;
        clsItemList* const made = list.handle->FindList(scName(path.front()));
        Require(made != nullptr);
        scNode* const first = list.First(true, path.front());
        return ParentOf(first ? *first : Append(list, path.front(), {}, made), path.subspan(1));
    }
    void Drop(const Node& entry) {
        entry->isThere = false;
        --size;
        if (!entry->handle)
            return;
        Empty(*entry);
        lists.erase(entry->handle);
        gone.insert(entry->handle);
        dropped.push_back(entry);
    }
    void Empty(scNode& list) {
        std::ranges::for_each(list.entries, [&](const Node& entry) { Drop(entry); });
        list.entries.clear();
        ++list.emptied;
    }
    template <class Condition>
    void RemoveIf(scNode& list, Condition condition) {
        std::erase_if(list.entries,
                      [&](const Node& entry) { return condition(*entry) && (Drop(entry), true); });
    }
    void Remove(scNode& list, bool isList, Path path) {
        if (path.size() == 1)
            return RemoveIf(list, [&](const scNode& entry) { return entry.Is(isList, path.front()); });
        for (const Node& entry : list.entries) {
            if (entry->Is(true, path.front()))
                Remove(*entry, isList, path.subspan(1));
        }
    }
    bool RemoveFirstItem(scNode& list) {
        for (const Node& entry : list.entries) {
            if (entry->handle ? RemoveFirstItem(*entry)
                              : (RemoveIf(list, [&](auto& other) { return &other == entry.get(); }), true))
                return true;
        }
        return false;
    }

    clsTree tree;
    scNode root;
    std::map<const void*, scNode*> lists; // those that are there
    std::set<const void*> gone;           // handles of those that are not
    std::vector<Node> dropped;            // walks look at them yet
    std::size_t size = 0;
    std::vector<std::unique_ptr<clsWalkTwins>> walks;
};

std::u16string Numbered(unsigned number) {
    const std::string digits = std::to_string(number);
    return u"n" + std::u16string(digits.begin(), digits.end());
}

std::u16string Joined(Path path) {
    return path.front() + (path.size() > 1 ? u"/" + Joined(path.subspan(1)) : u"");
}

class clsProgram {
  public:
    explicit clsProgram(clsChoices choices) : choices_(choices) {}

    void Run() {
        while (!choices_.AtEnd() && one_.size + other_.size < 6000) {
            scTwins& twins = choices_.Below(8) != 0 ? one_ : other_;
            scNode& list = AnyList(twins);
            (this->*operations[choices_.Below(std::size(operations))])(twins, list);
        }
        for (scTwins* twins : {&one_, &other_}) {
            Compare(twins->root);
            while (!twins->walks.empty())
                twins->walks.erase(AnyWalk(*twins));
            Compare(twins->root);
        }
    }

  private:
    scNode& AnyList(scTwins& twins) {
        if (choices_.Below(2) == 0)
            return twins.root;
        const std::size_t among = std::min<std::size_t>(twins.lists.size(), 256);
        return *std::next(twins.lists.begin(), choices_.Below(static_cast<unsigned>(among)))->second;
    }
    std::vector<std::unique_ptr<clsWalkTwins>>::iterator AnyWalk(scTwins& twins) {
        return twins.walks.begin() + choices_.Below(static_cast<unsigned>(twins.walks.size()));
    }
    // Ends in one letter, or in one of many names: lists get long, and names repeat.
    Names AnyPath() {
        const unsigned choice = choices_.Below(256);
        Names path;
        for (unsigned segments = choices_.Below(4); segments > 1; --segments)
            path.emplace_back(1, static_cast<char16_t>(u'a' + choices_.Below(3)));
        path.push_back(choice < 8 ? std::u16string(1, static_cast<char16_t>(u'a' + choice))
                                  : Numbered(choice));
        return path;
    }
    std::u16string Value() {
        return std::u16string(choices_.Below(40), static_cast<char16_t>(u'A' + choices_.Below(26)));
    }

    void AppendItem(scTwins& twins, scNode& list) {
        const Names path = AnyPath();
        const std::u16string value = Value();
        ProfpAppendItem(*list.handle, Joined(path), value);
        twins.Append(twins.ParentOf(list, path), path.back(), value);
    }
    void AppendMany(scTwins& twins, scNode& list) {
        const unsigned names = 1 + choices_.Below(256);
        for (unsigned count = choices_.Below(256); count != 0; --count) {
            ProfpAppendItem(*list.handle, Numbered(count % names), u"v");
            twins.Append(list, Numbered(count % names), u"v");
        }
    }
    void SetItem(scTwins& twins, scNode& list) {
        const Names path = AnyPath();
        const std::u16string value = Value();
        ProfpSetItem(*list.handle, Joined(path), value);
        scNode& target = twins.ParentOf(list, path);
        if (scNode* const entry = target.First(false, path.back()))
            entry->value = value;
        else
            twins.Append(target, path.back(), value);
    }
    void AppendLists(scTwins& twins, scNode& list) {
        const Names path = AnyPath();
        std::vector<clsItemList*> made{ProfpAppendList(*list.handle, Joined(path))};
        while (made.size() < path.size())
            made.push_back(made.back()->Parent());
        scNode* at = &list;
        for (const std::u16string& name : path) {
            at = &twins.Append(*at, name, {}, made.back());
            made.pop_back();
        }
    }
    void CreateList(scTwins& twins, scNode& list) {
        const Names path = AnyPath();
        clsItemList* const created = ProfpCreateList(*list.handle, Joined(path));
        scNode& target = twins.ParentOf(list, path);
        scNode* const entry = target.First(true, path.back());
        Require(!entry || entry->handle == created);
        entry ? twins.Empty(*entry) : static_cast<void>(twins.Append(target, path.back(), {}, created));
    }
    void Remove(scTwins& twins, scNode& list) {
        const Names path = AnyPath();
        const bool isList = choices_.Below(2) != 0;
        ProfpRemove(*list.handle, isList ? EntryKind::list : EntryKind::item, Joined(path));
        twins.Remove(list, isList, path);
    }
    void RemoveManyItems(scTwins& twins, scNode& list) {
        const unsigned step = 1 + choices_.Below(7);
        unsigned number = choices_.Below(256);
        for (unsigned count = choices_.Below(128); count != 0; --count, number += step) {
            const Names path{Numbered(number % 256)};
            ProfpRemove(*list.handle, EntryKind::item, path.front());
            twins.Remove(list, false, path);
        }
    }
    void RemoveByHandle(scTwins& twins, scNode& list) {
        Require(twins.tree.ListAt(list.handle) == list.handle);
        ProfpRemoveList(*list.handle);
        if (list.parent)
            twins.RemoveIf(*list.parent, [&](const scNode& entry) { return &entry == &list; });
    }
    void RemoveFirstItems(scTwins& twins, scNode&) {
        for (unsigned count = 1 + choices_.Below(64); count != 0; --count) {
            twins.tree.RemoveFirstItem();
            twins.RemoveFirstItem(twins.root);
        }
    }
    void Empty(scTwins& twins, scNode& list) {
        if (choices_.Below(4) != 0) // else there is never much in them
            return;
        twins.tree.Empty(*list.handle);
        twins.Empty(list);
    }

    void Copy(scTwins& twins, scNode& list) {
        const scNode copies = DeepCopy(AnyList(choices_.Below(2) == 0 ? one_ : other_));
        const std::uint32_t end = list.handle->End();
        twins.tree.Copy(*list.handle, *copies.handle);
        Attach(twins, list, copies, end);
    }
    static scNode DeepCopy(scNode node) {
        for (Node& entry : node.entries)
            entry = std::make_shared<scNode>(DeepCopy(*entry));
        return node;
    }
    // Puts copies into the model, with the handles that their lists have in the tree.
    static void Attach(scTwins& twins, scNode& list, const scNode& copies, std::uint32_t position) {
        for (const Node& copy : copies.entries) {
            clsItemList* const made =
                list.handle->At(position).IsList() ? list.handle->At(position).subList : nullptr;
            ++position;
            Require((made != nullptr) == (copy->handle != nullptr));
            scNode& added = twins.Append(list, copy->name, copy->value, made);
            Attach(twins, added, *copy, 0);
        }
    }

    void Find(scTwins&, scNode& list) {
        const Names path = AnyPath();
        const clsItem* const item = ProfpFindItem(*list.handle, Joined(path));
        const scNode* const expected = list.Follow(path, false);
        Require((item != nullptr) == (expected != nullptr) && (!item || item->Value() == expected->value));
        const scNode* const expectedList = list.Follow(path, true);
        Require(ProfpFindList(*list.handle, Joined(path)) == (expectedList ? expectedList->handle : nullptr));
    }

    void BeginWalk(scTwins& twins, scNode& list) {
        if (twins.walks.size() < 8)
            twins.walks.push_back(std::make_unique<clsWalkTwins>(list));
    }
    void GoOn(scTwins& twins, scNode&) {
        if (twins.walks.empty())
            return;
        const auto walk = AnyWalk(twins);
        for (unsigned steps = choices_.Below(16); steps != 0; --steps) {
            if (!(*walk)->Step())
                return static_cast<void>(twins.walks.erase(walk));
        }
    }

    void LookAtHandles(scTwins& twins, scNode& list) {
        const auto isList = [&](const void* address) {
            Require((twins.tree.ListAt(address) != nullptr) == twins.lists.contains(address));
        };
        std::ranges::for_each(twins.gone, isList);
        const auto at = reinterpret_cast<std::uintptr_t>(list.handle);
        const std::uintptr_t distance = sizeof(clsItemList) * choices_.Below(256);
        for (const std::uintptr_t address : {at + 1, at + 8, at + distance, at - distance,
                                             at + 1000u * choices_.Below(0x10000), std::uintptr_t{0x10}})
            isList(reinterpret_cast<const void*>(address));
    }

    using Operation = void (clsProgram::*)(scTwins&, scNode&);
    static constexpr Operation operations[] = {
        &clsProgram::AppendItem,      &clsProgram::AppendMany,     &clsProgram::SetItem,
        &clsProgram::AppendLists,     &clsProgram::CreateList,     &clsProgram::Remove,
        &clsProgram::RemoveManyItems, &clsProgram::RemoveByHandle, &clsProgram::RemoveFirstItems,
        &clsProgram::Empty,           &clsProgram::Copy,           &clsProgram::Find,
        &clsProgram::BeginWalk,       &clsProgram::GoOn,           &clsProgram::LookAtHandles};

    clsChoices choices_;
    scTwins one_{true}, other_{false};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clsProgram(clsChoices(data, size)).Run();
    return 0;
}
