#include "prof/name_index.h"

#include <bit>
#include <cstring>
#include <new>

namespace tvut {

clsNameIndex::~clsNameIndex() {
    slab_.Free(slots_, capacity_ * sizeof(scSlot));
}

bool clsNameIndex::Reserve(const clsItem* entries, std::uint32_t count) noexcept {
    return Resize(entries, static_cast<std::uint32_t>(std::bit_width(count)) + 1);
}

scMatch clsNameIndex::Find(const clsItem* entries, std::uint32_t key, std::u16string_view name) const {
    const scSlot slot = slots_[SlotOf(entries, key, name)];
    if (!slot.used)
        return {clsItemList::notFound, false};
    return {slot.position, slot.repeats != 0};
}

bool clsNameIndex::Append(const clsItem* entries, std::uint32_t position) noexcept {
    if (position >= (1u << 30))
        return false;
    if (count_ >= capacity_ - capacity_ / 4 &&
        !Resize(entries, static_cast<std::uint32_t>(std::bit_width(capacity_))))
        return false;
    Put(entries, position);
    return true;
}

void clsNameIndex::Put(const clsItem* entries, std::uint32_t position) noexcept {
    scSlot& slot = slots_[SlotOf(entries, entries[position].key, entries[position].Name())];
    if (slot.used) {
        slot.repeats = 1;
        return;
    }
    slot.used = 1;
    slot.repeats = 0;
    slot.position = position & 0x3FFFFFFFu;
    ++count_;
}

// Linear probing without markers: the slots behind the gap that may move into it do.
void clsNameIndex::Remove(const clsItem* entries, std::uint32_t position) noexcept {
    const std::uint32_t mask = capacity_ - 1;
    std::uint32_t gap = SlotOf(entries, entries[position].key, entries[position].Name());
    if (!slots_[gap].used)
        return;
    for (std::uint32_t at = (gap + 1) & mask; slots_[at].used; at = (at + 1) & mask) {
        const std::uint32_t home = Home(entries[slots_[at].position].key);
        if (((at - home) & mask) >= ((at - gap) & mask)) {
            slots_[gap] = slots_[at];
            gap = at;
        }
    }
    slots_[gap].used = 0;
    --count_;
}

void clsNameIndex::RemoveAt(const clsItemList& list, std::uint32_t position) noexcept {
    const clsItem& entry = list.At(position);
    scSlot& slot = slots_[SlotOf(&list.At(0), entry.key, entry.Name())];
    if (slot.position != position)
        return;
    const std::uint32_t next =
        slot.repeats ? list.FindFrom(position + 1, entry.key, entry.Name()) : clsItemList::notFound;
    if (next == clsItemList::notFound)
        Remove(&list.At(0), position);
    else
        slot.position = next & 0x3FFFFFFFu;
}

// The slot that holds the name, or the empty one where it would go.
std::uint32_t clsNameIndex::SlotOf(const clsItem* entries, std::uint32_t key,
                                   std::u16string_view name) const {
    const std::uint32_t mask = capacity_ - 1;
    std::uint32_t at = Home(key);
    for (; slots_[at].used; at = (at + 1) & mask) {
        const clsItem& entry = entries[slots_[at].position];
        if (entry.key == key && entry.Name() == name)
            break;
    }
    return at;
}

bool clsNameIndex::Resize(const clsItem* entries, std::uint32_t bits) noexcept {
    if (bits > 28)
        return false;
    const std::uint32_t newCapacity = 1u << bits;
    scSlot* newSlots = nullptr;
    try {
        newSlots = static_cast<scSlot*>(slab_.Allocate(newCapacity * sizeof(scSlot)));
    } catch (const std::bad_alloc&) {
        return false;
    }
    std::memset(static_cast<void*>(newSlots), 0, newCapacity * sizeof(scSlot));
    const std::uint32_t mask = newCapacity - 1;
    const std::uint32_t newShift = 32 - bits;
    for (std::uint32_t i = 0; i < capacity_; ++i) {
        if (!slots_[i].used)
            continue;
        std::uint32_t at = (entries[slots_[i].position].key * 0x9E3779B1u) >> newShift;
        while (newSlots[at].used)
            at = (at + 1) & mask;
        newSlots[at] = slots_[i];
    }
    slab_.Free(slots_, capacity_ * sizeof(scSlot));
    slots_ = newSlots;
    capacity_ = newCapacity;
    shift_ = newShift;
    return true;
}

} // namespace tvut
