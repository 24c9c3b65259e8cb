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

using namespace tvut;

namespace {

// ---- The model --------------------------------------------------------------------------------------

struct scList;

struct scEntry {
    std::u16string name;
    std::u16string value;
    std::shared_ptr<scList> list; // none for an item
    bool isThere = true;
};
using Entry = std::shared_ptr<scEntry>;

struct scList {
    std::vector<Entry> entries;
    scList* parent = nullptr;
    clsItemList* handle = nullptr;
    bool isThere = true;
    unsigned emptied = 0; // how often
};

// A path's first segment, and whether another follows.
struct scSegment {
    std::u16string name;
    bool isLast;
};

scSegment TakeSegment(std::u16string_view& path) {
    const std::size_t slash = path.find(u'/');
    const scSegment segment{std::u16string(path.substr(0, slash)), slash == path.npos};
    path.remove_prefix(segment.isLast ? path.size() : slash + 1);
    return segment;
}

Entry First(const scList& list, bool wantsList, std::u16string_view name) {
    for (const Entry& entry : list.entries) {
        if (entry->name == name && (entry->list != nullptr) == wantsList)
            return entry;
    }
    return nullptr;
}

class clsModel {
  public:
    explicit clsModel(clsItemList& root) { lists_[root_.handle = &root] = &root_; }

    scList& Root() { return root_; }
    // By handle, those that are there.
    const std::map<const void*, scList*>& Lists() const { return lists_; }
    // Handles of lists that are not.
    const std::set<const void*>& Gone() const { return gone_; }
    std::size_t Size() const { return size_; }

    void Append(scList& list, std::u16string_view name, std::u16string_view value) {
        list.entries.push_back(
            std::make_shared<scEntry>(scEntry{std::u16string(name), std::u16string(value), {}}));
        ++size_;
    }
    scList& AppendList(scList& list, std::u16string_view name, clsItemList* handle) {
        auto subList = std::make_shared<scList>();
        subList->parent = &list;
        list.entries.push_back(std::make_shared<scEntry>(scEntry{std::u16string(name), {}, subList}));
        ++size_;
        Name(*subList, handle);
        return *subList;
    }
    void Name(scList& list, clsItemList* handle) {
        list.handle = handle;
        lists_[handle] = &list;
        gone_.erase(handle);
    }

    void Empty(scList& list) {
        for (const Entry& entry : list.entries)
            Drop(*entry);
        list.entries.clear();
        ++list.emptied;
    }
    template <class Condition>
    void RemoveIf(scList& list, Condition condition) {
        std::erase_if(list.entries, [&](const Entry& entry) {
            if (!condition(*entry))
                return false;
            Drop(*entry);
            return true;
        });
    }
    void Remove(scList& list, bool lists, std::u16string_view path) {
        const scSegment segment = TakeSegment(path);
        if (segment.isLast)
            return RemoveIf(list, [&](const scEntry& entry) {
                return entry.name == segment.name && (entry.list != nullptr) == lists;
            });
        for (const Entry& entry : list.entries) {
            if (entry->list && entry->name == segment.name)
                Remove(*entry->list, lists, path);
        }
    }
    bool RemoveFirstItem(scList& list) {
        for (const Entry& entry : list.entries) {
            if (!entry->list) {
                RemoveIf(list, [found = entry.get()](const scEntry& other) { return &other == found; });
                return true;
            }
            if (RemoveFirstItem(*entry->list))
                return true;
        }
        return false;
    }

  private:
    void Drop(scEntry& entry) {
        entry.isThere = false;
        --size_;
        if (!entry.list)
            return;
        Empty(*entry.list);
        entry.list->isThere = false;
        lists_.erase(entry.list->handle);
        gone_.insert(entry.list->handle);
        dropped_.push_back(entry.list);
    }

    scList root_;
    std::map<const void*, scList*> lists_;
    std::set<const void*> gone_;
    std::vector<std::shared_ptr<scList>> dropped_; // walks look at them yet
    std::size_t size_ = 0;
};

// ---- A tree and its model ---------------------------------------------------------------------------

// A walk as an enumeration of a caller does it, and what it must come by.
class clsWalkTwins {
  public:
    explicit clsWalkTwins(scList& list)
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
        const clsItem& entry = walk_.List()->At(position_++);
        const scEntry& expected = *entries_[next_++];
        Require(entry.Name() == expected.name && entry.IsList() == (expected.list != nullptr));
        Require(entry.IsList() ? entry.subList == expected.list->handle : entry.Value() == expected.value);
        return true;
    }

  private:
    clsTree::clsWalk walk_;
    std::uint32_t end_;
    std::uint32_t position_ = 0;
    scList& list_;
    unsigned emptied_;
    std::vector<Entry> entries_;
    std::size_t next_ = 0;
};

class clsTwins {
  public:
    explicit clsTwins(bool pooling) : tree(pooling), model(tree.Root()) {}

    void Compare(const scList& list) const {
        std::vector<const scList*> open{&list};
        while (!open.empty()) {
            const scList& next = *open.back();
            open.pop_back();
            Require(next.handle->Count() == next.entries.size());
            std::uint32_t position = 0;
            for (const Entry& expected : next.entries) {
                while (next.handle->At(position).IsGap())
                    ++position;
                const clsItem& entry = next.handle->At(position++);
                Require(entry.Name() == expected->name && entry.Value() == expected->value);
                Require(entry.IsList() == (expected->list != nullptr));
                if (!expected->list)
                    continue;
                Require(entry.subList == expected->list->handle && entry.subList->Parent() == next.handle);
                open.push_back(expected->list.get());
            }
        }
    }

    clsTree tree;
    clsModel model;
    std::vector<std::unique_ptr<clsWalkTwins>> walks;
};

// ---- Operations -------------------------------------------------------------------------------------

class clsProgram {
  public:
    explicit clsProgram(clsChoices choices) : choices_(choices) {}

    void Run() {
        while (!choices_.AtEnd() && one_.model.Size() + other_.model.Size() < 6000)
            Step(choices_.Below(8) != 0 ? one_ : other_);
        for (clsTwins* twins : {&one_, &other_}) {
            twins->Compare(twins->model.Root());
            while (!twins->walks.empty())
                twins->walks.erase(twins->walks.begin() +
                                   choices_.Below(static_cast<unsigned>(twins->walks.size())));
            twins->Compare(twins->model.Root());
        }
    }

  private:
    using Operation = void (clsProgram::*)(clsTwins&, scList&);
    static const Operation operations[];

    void Step(clsTwins& twins) {
        scList& list = AnyList(twins);
        (this->*operations[choices_.Below(operationCount)])(twins, list);
    }

    scList& AnyList(clsTwins& twins) {
        const auto& lists = twins.model.Lists();
        if (choices_.Below(2) == 0)
            return twins.model.Root();
        return *std::next(lists.begin(),
                          choices_.Below(static_cast<unsigned>(std::min<std::size_t>(lists.size(), 256))))
                    ->second;
    }

    // One letter, or one of many: lists get long, and names repeat.
    std::u16string Name() {
        const unsigned choice = choices_.Below(256);
        return choice < 8 ? std::u16string(1, static_cast<char16_t>(u'a' + choice)) : Numbered(choice);
    }
    static std::u16string Numbered(unsigned number) {
        const std::string digits = std::to_string(number);
        return u"n" + std::u16string(digits.begin(), digits.end());
    }
    std::u16string Path() {
        std::u16string path = Name();
        for (unsigned segments = choices_.Below(4); segments > 1; --segments)
            path = std::u16string(1, static_cast<char16_t>(u'a' + choices_.Below(3))) + u"/" + path;
        return path;
    }
    std::u16string Value() {
        return std::u16string(choices_.Below(40), static_cast<char16_t>(u'A' + choices_.Below(26)));
    }

    // The list that a path's segments but the last lead to, made where missing; and the last one.
    scList& FollowCreating(clsTwins& twins, scList& list, std::u16string_view path, std::u16string& last) {
        scList* at = &list;
        scSegment segment = TakeSegment(path);
        for (; !segment.isLast; segment = TakeSegment(path)) {
            const Entry entry = First(*at, true, segment.name);
            clsItemList* const made = at->handle->FindList(scName(segment.name));
            Require(made != nullptr);
            at = entry ? entry->list.get() : &twins.model.AppendList(*at, segment.name, made);
        }
        last = segment.name;
        return *at;
    }
    static Entry Follow(const scList& list, std::u16string_view path, bool wantsList) {
        const scList* at = &list;
        for (;;) {
            const scSegment segment = TakeSegment(path);
            const Entry entry = First(*at, !segment.isLast || wantsList, segment.name);
            if (!entry || segment.isLast)
                return entry;
            at = entry->list.get();
        }
    }

    void AppendItem(clsTwins& twins, scList& list) {
        const std::u16string path = Path(), value = Value();
        ProfpAppendItem(*list.handle, path, value);
        std::u16string name;
        scList& target = FollowCreating(twins, list, path, name);
        twins.model.Append(target, name, value);
    }
    void AppendMany(clsTwins& twins, scList& list) {
        const unsigned names = 1 + choices_.Below(256);
        for (unsigned count = choices_.Below(256); count != 0; --count) {
            const std::u16string name = Numbered(count % names);
            ProfpAppendItem(*list.handle, name, u"v");
            twins.model.Append(list, name, u"v");
        }
    }
    void SetItem(clsTwins& twins, scList& list) {
        const std::u16string path = Path(), value = Value();
        ProfpSetItem(*list.handle, path, value);
        std::u16string name;
        scList& target = FollowCreating(twins, list, path, name);
        if (const Entry entry = First(target, false, name))
            entry->value = value;
        else
            twins.model.Append(target, name, value);
    }
    void AppendLists(clsTwins& twins, scList& list) {
        const std::u16string path = Path();
        clsItemList* const last = ProfpAppendList(*list.handle, path);
        std::vector<clsItemList*> made{last};
        for (std::ptrdiff_t more = std::count(path.begin(), path.end(), u'/'); more != 0; --more)
            made.push_back(made.back()->Parent());
        scList* at = &list;
        for (std::u16string_view rest = path; !made.empty(); made.pop_back())
            at = &twins.model.AppendList(*at, TakeSegment(rest).name, made.back());
    }
    void CreateList(clsTwins& twins, scList& list) {
        const std::u16string path = Path();
        clsItemList* const created = ProfpCreateList(*list.handle, path);
        std::u16string name;
        scList& target = FollowCreating(twins, list, path, name);
        if (const Entry entry = First(target, true, name)) {
            Require(entry->list->handle == created);
            twins.model.Empty(*entry->list);
        } else {
            twins.model.AppendList(target, name, created);
        }
    }
    void RemoveItems(clsTwins& twins, scList& list) {
        const std::u16string path = Path();
        ProfpRemove(*list.handle, EntryKind::item, path);
        twins.model.Remove(list, false, path);
    }
    void RemoveManyItems(clsTwins& twins, scList& list) {
        const unsigned step = 1 + choices_.Below(7);
        for (unsigned number = choices_.Below(256), count = choices_.Below(128); count != 0;
             --count, number += step) {
            ProfpRemove(*list.handle, EntryKind::item, Numbered(number % 256));
            twins.model.Remove(list, false, Numbered(number % 256));
        }
    }
    void RemoveLists(clsTwins& twins, scList& list) {
        const std::u16string path = Path();
        ProfpRemove(*list.handle, EntryKind::list, path);
        twins.model.Remove(list, true, path);
    }
    void RemoveByHandle(clsTwins& twins, scList& list) {
        clsItemList* const handle = twins.tree.ListAt(list.handle);
        Require(handle == list.handle);
        ProfpRemoveList(*handle);
        if (list.parent)
            twins.model.RemoveIf(*list.parent,
                                 [&](const scEntry& entry) { return entry.list.get() == &list; });
    }
    void RemoveFirstItems(clsTwins& twins, scList&) {
        for (unsigned count = 1 + choices_.Below(64); count != 0; --count) {
            twins.tree.RemoveFirstItem();
            twins.model.RemoveFirstItem(twins.model.Root());
        }
    }
    void Empty(clsTwins& twins, scList& list) {
        if (choices_.Below(4) != 0) // else there is never much in them
            return;
        twins.tree.Empty(*list.handle);
        twins.model.Empty(list);
    }

    void Copy(clsTwins& twins, scList& list) {
        clsTwins& from = choices_.Below(2) == 0 ? one_ : other_;
        scList& source = AnyList(from);
        const std::vector<Entry> copies = Copied(source.entries);
        const std::uint32_t end = list.handle->End();
        twins.tree.Copy(*list.handle, *source.handle);
        Attach(twins, list, copies, end);
    }
    static std::vector<Entry> Copied(const std::vector<Entry>& entries) {
        std::vector<Entry> copies;
        for (const Entry& entry : entries) {
            copies.push_back(std::make_shared<scEntry>(scEntry{entry->name, entry->value, {}}));
            if (!entry->list)
                continue;
            copies.back()->list = std::make_shared<scList>();
            copies.back()->list->entries = Copied(entry->list->entries);
        }
        return copies;
    }
    // Puts copies into the model, with the handles that their lists have in the tree.
    static void Attach(clsTwins& twins, scList& list, const std::vector<Entry>& copies,
                       std::uint32_t position) {
        for (const Entry& copy : copies) {
            const clsItem& entry = list.handle->At(position++);
            if (!copy->list) {
                twins.model.Append(list, copy->name, copy->value);
                continue;
            }
            Require(entry.IsList());
            Attach(twins, twins.model.AppendList(list, copy->name, entry.subList), copy->list->entries, 0);
        }
    }

    void Find(clsTwins&, scList& list) {
        const std::u16string path = Path();
        const clsItem* const item = ProfpFindItem(*list.handle, path);
        const Entry expected = Follow(list, path, false);
        Require((item != nullptr) == (expected != nullptr) && (!item || item->Value() == expected->value));
        clsItemList* const found = ProfpFindList(*list.handle, path);
        const Entry expectedList = Follow(list, path, true);
        Require(found == (expectedList ? expectedList->list->handle : nullptr));
    }

    void BeginWalk(clsTwins& twins, scList& list) {
        if (twins.walks.size() < 8)
            twins.walks.push_back(std::make_unique<clsWalkTwins>(list));
    }
    void GoOn(clsTwins& twins, scList&) {
        if (twins.walks.empty())
            return;
        const auto walk = twins.walks.begin() + choices_.Below(static_cast<unsigned>(twins.walks.size()));
        for (unsigned steps = choices_.Below(16); steps != 0; --steps) {
            if (!(*walk)->Step())
                return static_cast<void>(twins.walks.erase(walk));
        }
    }

    void LookAtHandles(clsTwins& twins, scList& list) {
        const auto& lists = twins.model.Lists();
        const auto isList = [&](const void* address) {
            Require((twins.tree.ListAt(address) != nullptr) == (lists.find(address) != lists.end()));
        };
        for (const void* const handle : twins.model.Gone())
            isList(handle);
        const auto at = reinterpret_cast<std::uintptr_t>(list.handle);
        for (const std::uintptr_t address :
             {at + 1, at + 8, at + sizeof(clsItemList) * choices_.Below(256),
              at - sizeof(clsItemList) * choices_.Below(256),
              at + 1000 * std::uintptr_t{choices_.Below(0x10000)}, std::uintptr_t{0x10}})
            isList(reinterpret_cast<const void*>(address));
    }

    static constexpr unsigned operationCount = 16;

    clsChoices choices_;
    clsTwins one_{true};
    clsTwins other_{false};
};

const clsProgram::Operation clsProgram::operations[] = {&clsProgram::AppendItem,
                                                        &clsProgram::AppendMany,
                                                        &clsProgram::SetItem,
                                                        &clsProgram::AppendLists,
                                                        &clsProgram::CreateList,
                                                        &clsProgram::RemoveItems,
                                                        &clsProgram::RemoveManyItems,
                                                        &clsProgram::RemoveLists,
                                                        &clsProgram::RemoveByHandle,
                                                        &clsProgram::RemoveFirstItems,
                                                        &clsProgram::Empty,
                                                        &clsProgram::Copy,
                                                        &clsProgram::Find,
                                                        &clsProgram::BeginWalk,
                                                        &clsProgram::GoOn,
                                                        &clsProgram::LookAtHandles};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clsProgram(clsChoices(data, size)).Run();
    return 0;
}
