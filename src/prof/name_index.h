// The index of a long list: from a name and kind to the first entry of it.
//
// Open addressing; a slot is one word. It holds the position of an entry, whether more entries of
// that name follow, and, in what bits are left, the low bits of the entry's key, so that hardly any
// entry is looked at in vain. There is no text of its own: keys and names are the list's entries.
//
// A bit for each slot says whether it holds anything. These stay in the processor's cache when the slots do
// not, and tell of most names that are new that they are, and where they go, without a look at the slots.
//
// Its memory is taken when the list grows and its slots are filled at the first lookup: so a lookup
// never allocates, and a list that is only loaded, walked or appended to pays next to nothing. An index
// that cannot be had for lack of memory is done without; the walk finds the same.
//
// The second entry of a name is found by walking the list, which is cheap once and dear a thousand times.
// So when entries of repeated names have been deleted a few times, those of each name are chained, in
// rings by position. A ring is in order: its first entry is the slot's.
#pragma once

#include "prof/item_sequence.h"
#include "text/units.h"

namespace tvut {

class clsNameIndex {
  public:
    explicit clsNameIndex(clsSlab& slab) : slab_(slab) {}
    clsNameIndex(const clsNameIndex&) = delete;
    clsNameIndex& operator=(const clsNameIndex&) = delete;
    ~clsNameIndex();

    // Takes memory for up to a number of entries; what was filled is void. False when there is none.
    bool Reserve(std::uint32_t count) noexcept;

    bool IsFilled() const { return filled_; }

    // Takes in all entries of a list, which are no more than there is room for.
    void Fill(const clsItemSequence& entries) noexcept;

    // The calls below are for a filled index.

    // Fetches the slot where a key is looked for.
    void Expect(std::uint32_t key) const noexcept { UtilpPrefetch(&slots_[Home(key)]); }

    scMatch Find(const clsItemSequence& entries, std::uint32_t key, std::u16string_view name) const;

    // Takes in the entry at a position after all that it knows.
    void Append(const clsItemSequence& entries, std::uint32_t position) noexcept;

    // Call it before entries of a repeated name are deleted.
    void ExpectRepeats(const clsItemSequence& entries) noexcept;

    // The entry of the same name and kind after one that is still in its place; notFound if none.
    std::uint32_t NextAlike(const clsItemSequence& entries, std::uint32_t position) const noexcept;

    // Forgets the name and kind of an entry that is still in its place.
    void Remove(const clsItemSequence& entries, std::uint32_t position) noexcept;

    // Forgets one entry that is still in its place; the next one of its name takes over.
    void RemoveAt(const clsItemSequence& entries, std::uint32_t position) noexcept;

  private:
    struct scLink {
        std::uint32_t next;
        std::uint32_t previous;
    };

    static constexpr std::uint32_t repeats = 0x80000000u;

    // What a slot holds is a position plus 1, so that it is never 0.
    std::uint32_t PositionIn(std::uint32_t slot) const { return (slot & positionMask_) - 1; }
    std::uint32_t Tag(std::uint32_t key) const { return key << positionBits_ & ~(positionMask_ | repeats); }
    std::uint32_t Home(std::uint32_t key) const { return (key * 0x9E3779B1u) >> shift_; }
    std::uint32_t SlotOf(const clsItemSequence& entries, std::uint32_t key, std::u16string_view name) const;
    void SetPosition(std::uint32_t& slot, std::uint32_t position) const {
        slot = (slot & ~positionMask_) | (position + 1);
    }
    bool IsTaken(std::uint32_t slot) const { return (taken_[slot / 32] >> slot % 32 & 1) != 0; }
    std::uint32_t ContentOf(std::uint32_t slot) const { return IsTaken(slot) ? slots_[slot] : 0; }
    void Put(std::uint32_t slot, std::uint32_t content) {
        slots_[slot] = content;
        taken_[slot / 32] |= 1u << slot % 32;
    }
    void Clear(std::uint32_t slot) { taken_[slot / 32] &= ~(1u << slot % 32); }
    // The bits follow the slots.
    static std::size_t BitBytes(std::uint32_t capacity) { return capacity / 8; }
    static std::size_t Bytes(std::uint32_t capacity) {
        return capacity * sizeof(std::uint32_t) + BitBytes(capacity);
    }
    std::uint32_t LinkCount() const { return capacity_ / 2; }
    void Chain(const clsItemSequence& entries) noexcept;
    void AppendToRing(std::uint32_t first, std::uint32_t position) noexcept;
    void LeaveRing(std::uint32_t& slot, std::uint32_t position) noexcept;
    void FreeAll() noexcept;

    clsSlab& slab_;
    std::uint32_t* slots_ = nullptr;
    std::uint32_t* taken_ = nullptr; // bits
    std::uint32_t capacity_ = 0;     // a power of two
    std::uint32_t shift_ = 32;
    std::uint32_t positionBits_ = 0;
    std::uint32_t positionMask_ = 0;
    scLink* links_ = nullptr; // by position; none while not chained
    std::uint32_t repeatWalks_ = 0;
    bool filled_ = false;
};

} // namespace tvut
