// One list of a profile's tree: a compact sequence of entries, found by name.
//
// An entry is three words: a key (hash of the name and kind), the name, and the value or sub-list. A
// lookup walks the keys in memory order; a long list has an index (see name_index.h) that answers
// exactly as the walk would. Changes are made by clsTree.
#pragma once

#include "prof/item_sequence.h"
#include "text/hash.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class clsNameIndex;
class clsTree;

// A name to look for, hashed once.
struct scName {
    std::u16string_view text;
    std::uint32_t hash;

    explicit scName(std::u16string_view name) : text(name), hash(UtilpHashText(name)) {}
    std::uint32_t Key(EntryKind kind) const {
        return (hash & ~clsItem::kindBits) | static_cast<std::uint32_t>(kind);
    }
};

class clsItemList {
  public:
    static constexpr std::uint32_t notFound = scMatch::notFound;

    clsTree* Tree() const { return tree_; }
    clsItemList* Parent() const { return parent_; }
    // Where this list's entry stands in its parent.
    std::uint32_t Position() const { return position_; }
    // Positions run from 0 to End() - 1; some may be gaps.
    std::uint32_t End() const { return entries_.End(); }
    const clsItem& At(std::uint32_t position) const { return entries_.At(position); }
    // The entries from a position on that follow each other in memory; none only at the end.
    std::span<const clsItem> RunFrom(std::uint32_t position) const { return entries_.RunFrom(position); }
    std::uint32_t Count() const { return End() - gaps_; }

    scMatch Find(EntryKind kind, const scName& name);
    // Call it some time before a Find, so that what that will look at is on its way from memory.
    void ExpectFind(EntryKind kind, const scName& name) const noexcept;
    // The next entry of that key and name at or after a position, by walking; notFound if none.
    std::uint32_t FindFrom(std::uint32_t position, std::uint32_t key, std::u16string_view name) const {
        return entries_.FindFrom(position, key, name);
    }

    const clsItem* FindItem(const scName& name) {
        const scMatch match = Find(EntryKind::item, name);
        return match.position == notFound ? nullptr : &entries_.At(match.position);
    }
    clsItemList* FindList(const scName& name) {
        const scMatch match = Find(EntryKind::list, name);
        return match.position == notFound ? nullptr : entries_.At(match.position).subList;
    }

  private:
    friend class clsTree;

    clsItemList(clsTree* tree, clsItemList* parent, std::uint32_t position)
        : tree_(tree), parent_(parent), position_(position) {}

    // ---- What the tree changes a list with. Texts and sub-lists of entries are the tree's to make and free.
    // ----

    // The place after the last entry, which counts once Added was called. Throws std::bad_alloc.
    clsItem& NewEntry(clsSlab& slab) { return entries_.Next(slab); }
    void Added(clsSlab& slab) noexcept {
        entries_.Added();
        if (End() >= indexedFrom)
            IndexLast(slab);
    }

    // Before entries become gaps: the index forgets all entries of a name, given the first, or a single one.
    void ForgetAll(const scMatch& first) noexcept;
    void ForgetAt(std::uint32_t position) noexcept;
    // The next entry of the name and kind of one that is still in its place.
    std::uint32_t NextAlike(std::uint32_t position) const noexcept;
    void MakeGap(std::uint32_t position) noexcept;

    // Whether gaps are enough to be closed: each entry then moves at most once for each deletion.
    bool HasManyGaps() const { return gaps_ > toleratedGaps && gaps_ > End() / 2; }
    // Closes all gaps and returns where the entry at a place, or the first one after it, stands then.
    std::uint32_t CloseGaps(clsSlab& slab, std::uint32_t place) noexcept;

    // Forgets all entries and returns the memory.
    void Free(clsSlab& slab) noexcept;

    // A walk over fewer entries costs no more than a look into an index.
    static constexpr std::uint32_t indexedFrom = 128;
    static constexpr std::uint32_t toleratedGaps = 16;

    void IndexLast(clsSlab& slab) noexcept;
    void ReserveIndex(clsSlab& slab, std::uint32_t count) noexcept;
    void DropIndex(clsSlab& slab) noexcept;

    clsTree* tree_; // first: a block that is free has null there
    clsItemList* parent_;
    clsItemSequence entries_{};
    std::uint32_t gaps_ = 0;
    std::uint32_t position_;
    clsNameIndex* index_ = nullptr;
};

} // namespace tvut
