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

// What a lookup found: the first entry of that name and kind, and whether there may be more.
struct scMatch {
    std::uint32_t position;
    bool mayRepeat;
};

class clsItemList {
  public:
    static constexpr std::uint32_t notFound = 0xFFFFFFFFu;

    clsTree* Tree() const { return tree_; }
    clsItemList* Parent() const { return parent_; }
    // Where this list's entry stands in its parent.
    std::uint32_t Position() const { return position_; }
    // Positions run from 0 to End() - 1; some may be gaps.
    std::uint32_t End() const { return used_; }
    const clsItem& At(std::uint32_t position) const { return entries_.At(position); }
    std::uint32_t Count() const { return used_ - gaps_; }

    scMatch Find(EntryKind kind, const scName& name);
    // Tells that a Find is to come, so that what it will look at is on its way from memory.
    void ExpectFind(EntryKind kind, const scName& name) const noexcept;
    // The next entry of that key and name at or behind a position, by walking; notFound if none.
    std::uint32_t FindFrom(std::uint32_t position, std::uint32_t key, std::u16string_view name) const;

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

    clsTree* tree_; // first: it is what tells a list from a block that is free
    clsItemList* parent_;
    clsItemSequence entries_{};
    std::uint32_t used_ = 0;
    std::uint32_t gaps_ = 0;
    std::uint32_t position_;
    clsNameIndex* index_ = nullptr;
};

} // namespace tvut
