// What a change of the tree has to keep true: every list knows its parent and its place in it, every entry
// owns a reference to its texts, and the place from which RemoveFirstItem goes on lies before any item. Each
// function that creates takes all memory first, in holders that give it back, and counts the new entry in
// last; so a failure leaves the list as it was.
//
// The walks down the tree hold one list and one position. A sub-list leads back to its own entry, so the way
// back needs no stack: a million nested lists are freed with as little of it as one.
#include "prof/tree.h"

#include <new>

namespace tvut {

// Returns a text to its store unless the entry that was to hold it came about.
class clsTree::clsTextHolder {
  public:
    clsTextHolder(clsTextStore& store, scText* text) : store_(store), text_(text) {}
    clsTextHolder(const clsTextHolder&) = delete;
    clsTextHolder& operator=(const clsTextHolder&) = delete;
    ~clsTextHolder() { store_.Release(text_); }
    scText* Hand() {
        scText* const text = text_;
        text_ = nullptr;
        return text;
    }

  private:
    clsTextStore& store_;
    scText* text_;
};

// ---- Adding -----------------------------------------------------------------------------------

void clsTree::AppendItem(clsItemList& list, const scName& name, std::u16string_view value) {
    clsTextHolder nameText(texts_, texts_.Name(name.text, name.hash));
    clsTextHolder valueText(texts_, texts_.Value(value));
    AddItem(list, name.Key(EntryKind::item), nameText, valueText);
}

void clsTree::AppendItem(clsItemList& list, const clsItem& namesake, std::u16string_view value) {
    const std::uint32_t key = namesake.key; // making room may move it
    clsTextHolder nameText(texts_, texts_.Again(namesake.name));
    clsItem& entry = list.NewEntry(slab_);
    entry.value = texts_.Value(value);
    entry.key = key;
    entry.name = nameText.Hand();
    Added(list);
}

void clsTree::AppendItem(clsItemList& list, const scName& name, const IclsValueWriter& value) {
    clsTextHolder nameText(texts_, texts_.Name(name.text, name.hash));
    scText* const text = texts_.Unfilled(value.Length());
    clsTextHolder valueText(texts_, text);
    if (text)
        value.Write(text->Characters());
    AddItem(list, name.Key(EntryKind::item), nameText, valueText);
}

clsItemList* clsTree::AppendList(clsItemList& list, const scName& name) {
    clsTextHolder nameText(texts_, texts_.Name(name.text, name.hash));
    return AddList(list, name.Key(EntryKind::list), nameText);
}

void clsTree::SetItem(clsItemList& list, const scName& name, std::u16string_view value) {
    list.ExpectFind(EntryKind::item, name); // the index is fetched while the text is made
    clsTextHolder valueText(texts_, texts_.Value(value));
    const scMatch match = list.Find(EntryKind::item, name);
    if (match.position == clsItemList::notFound) {
        clsTextHolder nameText(texts_, texts_.Name(name.text, name.hash));
        AddItem(list, name.Key(EntryKind::item), nameText, valueText);
        return;
    }
    clsItem& entry = list.entries_.At(match.position);
    texts_.Release(entry.value);
    entry.value = valueText.Hand();
}

void clsTree::AddItem(clsItemList& list, std::uint32_t key, clsTextHolder& name, clsTextHolder& value) {
    clsItem& entry = list.NewEntry(slab_);
    entry.key = key;
    entry.name = name.Hand();
    entry.value = value.Hand();
    Added(list);
}

void clsTree::Added(clsItemList& list) {
    list.Added(slab_);
    if (&list != beforeItems_.list && &list != &root_) // whose ends come after that place
        beforeItems_ = {&root_, 0};
}

clsItemList* clsTree::AddList(clsItemList& list, std::uint32_t key, clsTextHolder& name) {
    clsItem& entry = list.NewEntry(slab_);
    auto* const subList = new (lists_.Allocate()) clsItemList(this, &list, list.End());
    entry.key = key;
    entry.name = name.Hand();
    entry.subList = subList;
    list.Added(slab_);
    return subList;
}

// ---- Copying ----------------------------------------------------------------------------------

void clsTree::Copy(clsItemList& destination, clsItemList& source) {
    // The copies all come after these entries of the destination; should the walk come by there,
    // it stops short of them.
    const std::uint32_t destinationEnd = destination.End();
    const bool sameTree = source.Tree() == this;
    const clsItemList* from = &source;
    clsItemList* to = &destination;
    std::uint32_t position = 0;
    for (;;) {
        const std::uint32_t end = from == &destination ? destinationEnd : from->End();
        if (position < end) {
            const clsItem entry = from->At(position++);
            if (entry.IsItem()) {
                CopyItem(*to, entry, sameTree);
            } else if (entry.IsList()) {
                to = CopyListEntry(*to, entry, sameTree);
                from = entry.subList;
                position = 0;
            }
        } else if (from == &source) {
            return;
        } else {
            position = from->Position() + 1;
            from = from->Parent();
            to = to->Parent();
        }
    }
}

scText* clsTree::CopyName(const clsItem& entry, bool sameTree) {
    if (sameTree)
        return texts_.Again(entry.name);
    return texts_.Name(entry.Name(), UtilpHashText(entry.Name()));
}

void clsTree::CopyItem(clsItemList& destination, const clsItem& item, bool sameTree) {
    clsTextHolder name(texts_, CopyName(item, sameTree));
    clsTextHolder value(texts_, sameTree ? texts_.Again(item.value) : texts_.Value(item.Value()));
    AddItem(destination, item.key, name, value);
}

clsItemList* clsTree::CopyListEntry(clsItemList& destination, const clsItem& entry, bool sameTree) {
    clsTextHolder name(texts_, CopyName(entry, sameTree));
    return AddList(destination, entry.key, name);
}

// ---- Removing ---------------------------------------------------------------------------------

void clsTree::RemoveAll(clsItemList& list, EntryKind kind, const scName& name) noexcept {
    const scMatch first = list.Find(kind, name);
    if (first.position == clsItemList::notFound)
        return;
    list.ForgetAll(first);
    for (std::uint32_t position = first.position; position != clsItemList::notFound;) {
        const std::uint32_t next = first.mayRepeat ? list.NextAlike(position) : clsItemList::notFound;
        MakeGap(list, position);
        position = next;
    }
    Close(list);
}

void clsTree::RemoveAt(clsItemList& list, std::uint32_t position) noexcept {
    list.ForgetAt(position);
    MakeGap(list, position);
    Close(list);
}

// Starts where the last call left off: a profile of nothing but items is not walked once for each, nor are
// the lists that hold none.
void clsTree::RemoveFirstItem() noexcept {
    if (FindFirstItem())
        RemoveAt(*beforeItems_.list, beforeItems_.position);
}

bool clsTree::FindFirstItem() noexcept {
    auto& [list, position] = beforeItems_;
    for (;;) {
        if (position == list->End()) {
            if (list == &root_)
                return false;
            position = list->Position() + 1;
            list = list->Parent();
            continue;
        }
        const clsItem& entry = list->At(position);
        if (entry.IsItem())
            return true;
        if (entry.IsList())
            beforeItems_ = {entry.subList, 0};
        else
            ++position;
    }
}

void clsTree::Empty(clsItemList& list) noexcept {
    EndWalks(list);
    ReleaseEntries(list);
    if (beforeItems_.list == &list)
        beforeItems_.position = 0;
    list.Free(slab_);
}

void clsTree::MakeGap(clsItemList& list, std::uint32_t position) noexcept {
    const clsItem& entry = list.At(position);
    texts_.Release(entry.name);
    if (entry.IsList())
        DestroyList(entry.subList);
    else
        texts_.Release(entry.value);
    list.MakeGap(position);
}

// Nobody may walk the list meanwhile: positions hold during a walk.
void clsTree::Close(clsItemList& list) noexcept {
    if (!list.HasManyGaps() || IsWalked(list))
        return;
    const bool isPlaceHere = beforeItems_.list == &list;
    const std::uint32_t place = list.CloseGaps(slab_, isPlaceHere ? beforeItems_.position : 0);
    if (isPlaceHere)
        beforeItems_.position = place;
}

// Releases all entries of a list and of the lists below it, last ones first, without recursion: a
// list that has no entries left is freed on the way back to its parent.
void clsTree::ReleaseEntries(clsItemList& top) noexcept {
    clsItemList* list = &top;
    for (;;) {
        if (list->End() == 0) {
            if (list == &top)
                return;
            clsItemList* const parent = list->parent_;
            FreeList(list);
            list = parent;
            continue;
        }
        const clsItem entry = list->entries_.TakeLast();
        if (entry.IsGap())
            continue;
        texts_.Release(entry.name);
        if (entry.IsList())
            list = entry.subList;
        else
            texts_.Release(entry.value);
    }
}

void clsTree::DestroyList(clsItemList* list) noexcept {
    ReleaseEntries(*list);
    FreeList(list);
}

void clsTree::FreeList(clsItemList* list) noexcept {
    EndWalks(*list);
    if (beforeItems_.list == list)
        beforeItems_ = {list->parent_, list->position_};
    list->Free(slab_);
    lists_.Free(list);
}

// ---- Walks ------------------------------------------------------------------------------------

clsTree::clsWalk::clsWalk(clsItemList& list)
    : tree_(*list.Tree()),
      state_(new (tree_.slab_.Allocate(sizeof(scWalkState))) scWalkState{&list, tree_.walks_}) {
    tree_.walks_ = state_;
}

// Walks end in any order: one whose caller never came back stays.
clsTree::clsWalk::~clsWalk() {
    scWalkState** link = &tree_.walks_;
    while (*link != state_)
        link = &(*link)->next;
    *link = state_->next;
    if (state_->list)
        tree_.Close(*state_->list);
    tree_.slab_.Free(state_, sizeof(scWalkState));
}

clsItemList* clsTree::clsWalk::List() const {
    return state_->list;
}

bool clsTree::IsWalked(const clsItemList& list) const noexcept {
    for (const scWalkState* walk = walks_; walk; walk = walk->next) {
        if (walk->list == &list)
            return true;
    }
    return false;
}

void clsTree::EndWalks(const clsItemList& list) noexcept {
    for (scWalkState* walk = walks_; walk; walk = walk->next) {
        if (walk->list == &list)
            walk->list = nullptr;
    }
}

} // namespace tvut
