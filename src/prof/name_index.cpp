// Slots are probed one after the other. A slot's tag, what bits of the key fit beside the position, rules out
// nearly all other names before an entry is looked at. Deleting moves later slots of a run back into the
// hole, so that no markers are left and a run never grows by deletions.
//
// Names that repeat share one slot, which says so. The entries after it are found by a walk as long as that
// is cheap, and by rings of positions from then on; see name_index.h.
#include "prof/name_index.h"

#include <bit>
#include <cstring>
#include <new>

namespace tvut {

namespace {

// Walks over a list that together cost about what chaining its entries does.
constexpr std::uint32_t walksBeforeChaining = 8;

// Time enough for a slot to come from memory.
constexpr std::uint32_t expectedAhead = 16;

} // namespace

clsNameIndex::~clsNameIndex() {
    FreeAll();
}

void clsNameIndex::FreeAll() noexcept {
    slab_.Free(links_, LinkCount() * sizeof(scLink));
    slab_.Free(slots_, Bytes(capacity_));
    links_ = nullptr;
    slots_ = nullptr;
    capacity_ = 0;
}

// At most half of the slots get used, and positions take one bit more than that: a list
// with gaps has more positions than entries.
bool clsNameIndex::Reserve(std::uint32_t count) noexcept {
    const auto bits = static_cast<std::uint32_t>(std::bit_width(count - 1)) + 1;
    filled_ = false;
    repeatWalks_ = 0;
    FreeAll();
    if (bits > 28)
        return false;
    try {
        slots_ = static_cast<std::uint32_t*>(slab_.Allocate(Bytes(1u << bits)));
    } catch (const std::bad_alloc&) {
        return false;
    }
    capacity_ = 1u << bits;
    taken_ = slots_ + capacity_;
    shift_ = 32 - bits;
    positionBits_ = bits + 1;
    positionMask_ = (1u << positionBits_) - 1;
    return true;
}

void clsNameIndex::Fill(const clsItemSequence& entries) noexcept {
    std::memset(taken_, 0, BitBytes(capacity_));
    filled_ = true;
    for (std::uint32_t position = 0; position < entries.End(); ++position) {
        if (entries.End() - position > expectedAhead) // each slot is somewhere else in memory
            Expect(entries.At(position + expectedAhead).key);
        if (!entries.At(position).IsGap())
            Append(entries, position);
    }
}

scMatch clsNameIndex::Find(const clsItemSequence& entries, std::uint32_t key,
                           std::u16string_view name) const {
    const std::uint32_t slot = ContentOf(SlotOf(entries, key, name));
    if (slot == 0)
        return {scMatch::notFound, false};
    return {PositionIn(slot), (slot & repeats) != 0};
}

void clsNameIndex::Append(const clsItemSequence& entries, std::uint32_t position) noexcept {
    const clsItem& entry = entries.At(position);
    const std::uint32_t at = SlotOf(entries, entry.key, entry.Name());
    if (IsTaken(at)) {
        if (links_)
            AppendToRing(PositionIn(slots_[at]), position);
        slots_[at] |= repeats;
        return;
    }
    if (links_)
        links_[position] = {position, position};
    Put(at, Tag(entry.key) | (position + 1));
}

// Linear probing without markers: the slots after the gap that may move into it do.
void clsNameIndex::Remove(const clsItemSequence& entries, std::uint32_t position) noexcept {
    const std::uint32_t mask = capacity_ - 1;
    std::uint32_t gap = SlotOf(entries, entries.At(position).key, entries.At(position).Name());
    if (!IsTaken(gap))
        return;
    for (std::uint32_t at = (gap + 1) & mask; IsTaken(at); at = (at + 1) & mask) {
        const std::uint32_t home = Home(entries.At(PositionIn(slots_[at])).key);
        if (((at - home) & mask) >= ((at - gap) & mask)) {
            slots_[gap] = slots_[at];
            gap = at;
        }
    }
    Clear(gap);
}

void clsNameIndex::RemoveAt(const clsItemSequence& entries, std::uint32_t position) noexcept {
    const clsItem& entry = entries.At(position);
    if ((ContentOf(SlotOf(entries, entry.key, entry.Name())) & repeats) != 0)
        ExpectRepeats(entries); // after which there may turn out to be no other entry
    const std::uint32_t at = SlotOf(entries, entry.key, entry.Name());
    if ((ContentOf(at) & repeats) == 0)
        return Remove(entries, position);
    std::uint32_t& slot = slots_[at];
    if (links_)
        return LeaveRing(slot, position);
    if (PositionIn(slot) != position)
        return;
    const std::uint32_t next = NextAlike(entries, position);
    if (next == scMatch::notFound)
        Remove(entries, position);
    else
        SetPosition(slot, next);
}

// ---- Names that repeat ------------------------------------------------------------------------

void clsNameIndex::ExpectRepeats(const clsItemSequence& entries) noexcept {
    if (!links_ && ++repeatWalks_ > walksBeforeChaining)
        Chain(entries);
}

// Filled anew, the entries of each name are met in their order. Without memory for it all stays as it is.
void clsNameIndex::Chain(const clsItemSequence& entries) noexcept {
    try {
        links_ = static_cast<scLink*>(slab_.Allocate(LinkCount() * sizeof(scLink)));
    } catch (const std::bad_alloc&) {
        return;
    }
    Fill(entries);
}

// After the last one, which in a ring stands before the first.
void clsNameIndex::AppendToRing(std::uint32_t first, std::uint32_t position) noexcept {
    const std::uint32_t last = links_[first].previous;
    links_[position] = {first, last};
    links_[last].next = position;
    links_[first].previous = position;
}

void clsNameIndex::LeaveRing(std::uint32_t& slot, std::uint32_t position) noexcept {
    const scLink link = links_[position];
    links_[link.previous].next = link.next;
    links_[link.next].previous = link.previous;
    if (PositionIn(slot) == position)
        SetPosition(slot, link.next);
    if (link.next == link.previous) // one is left
        slot &= ~repeats;
}

std::uint32_t clsNameIndex::NextAlike(const clsItemSequence& entries, std::uint32_t position) const noexcept {
    const clsItem& entry = entries.At(position);
    if (!links_)
        return entries.FindFrom(position + 1, entry.key, entry.Name());
    const std::uint32_t next = links_[position].next;
    return next > position ? next : scMatch::notFound;
}

// The slot that holds the name, or the free one where it would go.
std::uint32_t clsNameIndex::SlotOf(const clsItemSequence& entries, std::uint32_t key,
                                   std::u16string_view name) const {
    const std::uint32_t mask = capacity_ - 1;
    const std::uint32_t tag = Tag(key);
    std::uint32_t at = Home(key);
    for (; IsTaken(at); at = (at + 1) & mask) {
        if ((slots_[at] & ~(positionMask_ | repeats)) != tag)
            continue;
        const clsItem& entry = entries.At(PositionIn(slots_[at]));
        if (entry.key == key && UtilpEqual(entry.Name(), name))
            break;
    }
    return at;
}

} // namespace tvut
