// A list and its index. The index is a help that may be missing: it is made when a list has become long,
// filled at the first lookup, dropped when the list shrinks or memory does not suffice, and every answer of
// it is the walk's. Deleting makes gaps, so that positions hold; gaps are closed once they outnumber the
// entries, which moves each entry at most once for each deletion.
#include "prof/item_list.h"

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

// Whether a list gets a larger index at this length: 128, 512, 2048 and so on.
bool IsIndexStep(std::uint32_t count) {
    return count >= indexedFrom && std::has_single_bit(count) &&
           std::countr_zero(count / indexedFrom) % std::countr_zero(indexGrowth) == 0;
}

} // namespace

scMatch clsItemList::Find(EntryKind kind, const scName& name) {
    if (!index_)
        return {entries_.FindFrom(0, name.Key(kind), name.text), true};
    if (!index_->IsFilled())
        index_->Fill(entries_);
    return index_->Find(entries_, name.Key(kind), name.text);
}

void clsItemList::ExpectFind(EntryKind kind, const scName& name) const noexcept {
    if (index_ && index_->IsFilled())
        index_->Expect(name.Key(kind));
}

// ---- Growing ----------------------------------------------------------------------------------

void clsItemList::Added(clsSlab& slab) noexcept {
    const std::uint32_t position = entries_.End();
    entries_.Added();
    if (IsIndexStep(entries_.End()))
        ReserveIndex(slab, entries_.End() * indexGrowth);
    else if (index_ && index_->IsFilled())
        index_->Append(entries_, position);
}

// Makes an index for up to a number of entries, to be filled when it is first needed; or none, when there is
// no memory for it.
void clsItemList::ReserveIndex(clsSlab& slab, std::uint32_t count) noexcept {
    if (!index_) {
        try {
            index_ = new (slab.Allocate(sizeof(clsNameIndex))) clsNameIndex(slab);
        } catch (const std::bad_alloc&) {
            return;
        }
    }
    if (!index_->Reserve(count))
        DropIndex(slab);
}

void clsItemList::DropIndex(clsSlab& slab) noexcept {
    if (!index_)
        return;
    index_->~clsNameIndex();
    slab.Free(index_, sizeof(clsNameIndex));
    index_ = nullptr;
}

// ---- Shrinking --------------------------------------------------------------------------------

// An index there is has been filled: the first entry was found by it.
void clsItemList::ForgetAll(const scMatch& first) noexcept {
    if (!index_)
        return;
    if (first.mayRepeat)
        index_->ExpectRepeats(entries_);
    index_->Remove(entries_, first.position);
}

void clsItemList::ForgetAt(std::uint32_t position) noexcept {
    if (index_ && index_->IsFilled())
        index_->RemoveAt(entries_, position);
}

std::uint32_t clsItemList::NextAlike(std::uint32_t position) const noexcept {
    if (index_)
        return index_->NextAlike(entries_, position);
    const clsItem& entry = entries_.At(position);
    return entries_.FindFrom(position + 1, entry.key, entry.Name());
}

void clsItemList::MakeGap(std::uint32_t position) noexcept {
    clsItem& entry = entries_.At(position);
    entry.key = static_cast<std::uint32_t>(EntryKind::gap);
    entry.name = nullptr;
    entry.value = nullptr;
    ++gaps_;
}

bool clsItemList::HasManyGaps() const {
    return gaps_ > toleratedGaps && gaps_ > End() / 2;
}

std::uint32_t clsItemList::CloseGaps(clsSlab& slab, std::uint32_t place) noexcept {
    std::uint32_t kept = 0;
    std::uint32_t placeAfter = 0;
    for (std::uint32_t i = 0; i < End(); ++i) {
        if (i == place)
            placeAfter = kept;
        const clsItem entry = entries_.At(i);
        if (entry.IsGap())
            continue;
        if (entry.IsList())
            entry.subList->position_ = kept;
        entries_.At(kept++) = entry;
    }
    if (place >= End())
        placeAfter = kept;
    entries_.Cut(kept);
    gaps_ = 0;
    if (kept < indexedFrom)
        DropIndex(slab);
    else
        ReserveIndex(slab, kept * indexGrowth);
    return placeAfter;
}

void clsItemList::Free(clsSlab& slab) noexcept {
    DropIndex(slab);
    entries_.Free(slab);
    gaps_ = 0;
}

} // namespace tvut
