#include "prof/name_index.h"

#include "text/units.h"

#include <bit>
#include <cstring>
#include <new>

namespace tvut {

clsNameIndex::~clsNameIndex() {
    slab_.Free(slots_, capacity_ * sizeof(std::uint32_t));
}

bool clsNameIndex::Build(const clsItemList& list) noexcept {
    if (!Allocate(static_cast<std::uint32_t>(std::bit_width(list.End())) + 1))
        return false;
    for (std::uint32_t position = 0; position < list.End(); ++position) {
        if (!list.At(position).IsGap())
            Put(list, position);
    }
    return true;
}

// The old slots are of no use for a larger table: to know where they go takes the entries' keys, and
// those are read faster in the order of the list.
bool clsNameIndex::Append(const clsItemList& list) noexcept {
    if (count_ >= capacity_ - capacity_ / 4 || list.End() >= positionMask_)
        return Build(list);
    Put(list, list.End() - 1);
    return true;
}

scMatch clsNameIndex::Find(const clsItemList& list, std::uint32_t key, std::u16string_view name) const {
    const std::uint32_t slot = slots_[SlotOf(list, key, name)];
    if (slot == 0)
        return {clsItemList::notFound, false};
    return {PositionIn(slot), (slot & repeats) != 0};
}

void clsNameIndex::Put(const clsItemList& list, std::uint32_t position) noexcept {
    const clsItem& entry = list.At(position);
    std::uint32_t& slot = slots_[SlotOf(list, entry.key, entry.Name())];
    if (slot != 0) {
        slot |= repeats;
        return;
    }
    slot = Tag(entry.key) | (position + 1);
    ++count_;
}

// Linear probing without markers: the slots behind the gap that may move into it do.
void clsNameIndex::Remove(const clsItemList& list, std::uint32_t position) noexcept {
    const std::uint32_t mask = capacity_ - 1;
    std::uint32_t gap = SlotOf(list, list.At(position).key, list.At(position).Name());
    if (slots_[gap] == 0)
        return;
    for (std::uint32_t at = (gap + 1) & mask; slots_[at] != 0; at = (at + 1) & mask) {
        const std::uint32_t home = Home(list.At(PositionIn(slots_[at])).key);
        if (((at - home) & mask) >= ((at - gap) & mask)) {
            slots_[gap] = slots_[at];
            gap = at;
        }
    }
    slots_[gap] = 0;
    --count_;
}

void clsNameIndex::RemoveAt(const clsItemList& list, std::uint32_t position) noexcept {
    const clsItem& entry = list.At(position);
    std::uint32_t& slot = slots_[SlotOf(list, entry.key, entry.Name())];
    if (PositionIn(slot) != position)
        return;
    const std::uint32_t next =
        slot & repeats ? list.FindFrom(position + 1, entry.key, entry.Name()) : clsItemList::notFound;
    if (next == clsItemList::notFound)
        Remove(list, position);
    else
        slot = (slot & ~positionMask_) | (next + 1);
}

// The slot that holds the name, or the free one where it would go.
std::uint32_t clsNameIndex::SlotOf(const clsItemList& list, std::uint32_t key,
                                   std::u16string_view name) const {
    const std::uint32_t mask = capacity_ - 1;
    const std::uint32_t tag = Tag(key);
    std::uint32_t at = Home(key);
    for (; slots_[at] != 0; at = (at + 1) & mask) {
        if ((slots_[at] & ~(positionMask_ | repeats)) != tag)
            continue;
        const clsItem& entry = list.At(PositionIn(slots_[at]));
        if (entry.key == key && UtilpEqual(entry.Name(), name))
            break;
    }
    return at;
}

// An empty table of 2^bits slots in place of the old one.
bool clsNameIndex::Allocate(std::uint32_t bits) noexcept {
    slab_.Free(slots_, capacity_ * sizeof(std::uint32_t));
    slots_ = nullptr;
    capacity_ = count_ = 0;
    if (bits > 29)
        return false;
    try {
        slots_ = static_cast<std::uint32_t*>(slab_.Allocate(sizeof(std::uint32_t) << bits));
    } catch (const std::bad_alloc&) {
        return false;
    }
    capacity_ = 1u << bits;
    std::memset(slots_, 0, capacity_ * sizeof(std::uint32_t));
    shift_ = 32 - bits;
    positionBits_ = bits + 1;
    positionMask_ = (1u << positionBits_) - 1;
    return true;
}

} // namespace tvut
