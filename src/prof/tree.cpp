#include "prof/tree.h"

#include "prof/name_index.h"

#include <bit>
#include <new>

namespace tvut {

namespace {

constexpr std::uint32_t toleratedGaps = 16;

// A walk over fewer entries costs no more than a look into an index.
constexpr std::uint32_t indexedFrom = 128;

// An index grows by this factor. A larger one is filled anew, and with steps of two that would come to
// two fillings of each entry of a growing list.
constexpr std::uint32_t indexGrowth = 4;

// Whether a list of so many entries is where its index gets larger: 128, 512, 2048 and so on.
bool IsIndexStep(std::uint32_t count) {
    return count >= indexedFrom && std::has_single_bit(count) &&
           std::countr_zero(count / indexedFrom) % std::countr_zero(indexGrowth) == 0;
}

} // namespace

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
    clsTextHolder nameText(texts_, texts_.Again(namesake.name));
    clsTextHolder valueText(texts_, texts_.Value(value));
    AddItem(list, namesake.key, nameText, valueText);
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
    clsItem& entry = NewEntry(list);
    entry.key = key;
    entry.name = name.Hand();
    entry.value = value.Hand();
    Added(list);
    if (&list != beforeItems_.list && &list != &root_) // whose ends come after that place
        beforeItems_ = {&root_, 0};
}

clsItemList* clsTree::AddList(clsItemList& list, std::uint32_t key, clsTextHolder& name) {
    clsItem& entry = NewEntry(list);
    auto* const subList = new (lists_.Allocate()) clsItemList(this, &list, list.used_);
    entry.key = key;
    entry.name = name.Hand();
    entry.subList = subList;
    Added(list);
    return subList;
}

// The place behind the last entry. It counts only once Added was called, so that a failure in between
// leaves the list as it was.
clsItem& clsTree::NewEntry(clsItemList& list) {
    if (list.used_ == list.entries_.Capacity())
        list.entries_.Grow(slab_);
    return list.entries_.At(list.used_);
}

void clsTree::Added(clsItemList& list) noexcept {
    const std::uint32_t position = list.used_++;
    if (IsIndexStep(list.used_))
        ReserveIndex(list, list.used_ * indexGrowth);
    else if (list.index_ && list.index_->IsFilled())
        list.index_->Append(list, position);
}

// Gives a list an index for up to so many entries, to be filled when it is first needed; or none, when
// there is no memory for it.
void clsTree::ReserveIndex(clsItemList& list, std::uint32_t count) noexcept {
    if (!list.index_) {
        try {
            list.index_ = new (slab_.Allocate(sizeof(clsNameIndex))) clsNameIndex(slab_);
        } catch (const std::bad_alloc&) {
            return;
        }
    }
    if (!list.index_->Reserve(count))
        DropIndex(list);
}

// ---- Copying ----------------------------------------------------------------------------------

void clsTree::Copy(clsItemList& destination, clsItemList& source) {
    // The copies all land behind these entries of the destination; should the walk come by there,
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
    clsNameIndex* const index = list.index_; // filled by Find
    if (index && first.mayRepeat)
        index->ExpectRepeats(list);
    if (index)
        index->Remove(list, first.position);
    for (std::uint32_t position = first.position; position != clsItemList::notFound;) {
        std::uint32_t next = clsItemList::notFound;
        if (first.mayRepeat)
            next = index ? index->NextAlike(list, position)
                         : list.FindFrom(position + 1, name.Key(kind), name.text);
        MakeGap(list, position);
        position = next;
    }
    Close(list);
}

void clsTree::RemoveAt(clsItemList& list, std::uint32_t position) noexcept {
    if (list.index_ && list.index_->IsFilled())
        list.index_->RemoveAt(list, position);
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
    DropIndex(list);
    list.entries_.Free(slab_);
    list.used_ = list.gaps_ = 0;
}

void clsTree::MakeGap(clsItemList& list, std::uint32_t position) noexcept {
    clsItem& entry = list.entries_.At(position);
    texts_.Release(entry.name);
    if (entry.IsList())
        DestroyList(entry.subList);
    else
        texts_.Release(entry.value);
    entry.key = static_cast<std::uint32_t>(EntryKind::gap);
    entry.name = nullptr;
    entry.value = nullptr;
    ++list.gaps_;
}

// Closes the gaps of a list once they are many: each entry moves at most once for each deletion.
void clsTree::Close(clsItemList& list) noexcept {
    if (list.gaps_ <= toleratedGaps || list.gaps_ <= list.used_ / 2 || IsWalked(list))
        return;
    std::uint32_t kept = 0;
    std::uint32_t placeBefore = 0;
    for (std::uint32_t i = 0; i < list.used_; ++i) {
        if (i == beforeItems_.position)
            placeBefore = kept;
        const clsItem entry = list.entries_.At(i);
        if (entry.IsGap())
            continue;
        if (entry.IsList())
            entry.subList->position_ = kept;
        list.entries_.At(kept++) = entry;
    }
    if (beforeItems_.list == &list)
        beforeItems_.position = beforeItems_.position < list.used_ ? placeBefore : kept;
    list.used_ = kept;
    list.gaps_ = 0;
    if (kept < indexedFrom)
        DropIndex(list);
    else
        ReserveIndex(list, kept * indexGrowth);
}

void clsTree::DropIndex(clsItemList& list) noexcept {
    if (!list.index_)
        return;
    list.index_->~clsNameIndex();
    slab_.Free(list.index_, sizeof(clsNameIndex));
    list.index_ = nullptr;
}

// Releases all entries of a list and of the lists below it, last ones first, without recursion: a
// list that has no entries left is freed on the way back to its parent.
void clsTree::ReleaseEntries(clsItemList& top) noexcept {
    clsItemList* list = &top;
    for (;;) {
        if (list->used_ == 0) {
            if (list == &top)
                return;
            clsItemList* const parent = list->parent_;
            FreeList(list);
            list = parent;
            continue;
        }
        const clsItem entry = list->entries_.At(--list->used_);
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
    DropIndex(*list);
    list->entries_.Free(slab_);
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
