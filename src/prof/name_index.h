// The index of a long list: from a name and kind to the first entry of it.
//
// Open addressing over positions in the list; each slot also tells whether more entries of that name
// follow. It holds no text of its own: keys and names are the list's entries. An index that cannot be
// had for lack of memory is done without; the walk gives the same answers.
#pragma once

#include "prof/item_list.h"

namespace tvut {

class clsNameIndex {
  public:
    explicit clsNameIndex(clsSlab& slab) : slab_(slab) {}
    clsNameIndex(const clsNameIndex&) = delete;
    clsNameIndex& operator=(const clsNameIndex&) = delete;
    ~clsNameIndex();

    // Makes room for a number of entries. False when memory runs out; the index is then unusable.
    bool Reserve(const clsItem* entries, std::uint32_t count) noexcept;

    scMatch Find(const clsItem* entries, std::uint32_t key, std::u16string_view name) const;

    // Tells of an entry newly appended at a position behind all others. False when memory runs out.
    bool Append(const clsItem* entries, std::uint32_t position) noexcept;

    // Forgets the name and kind of an entry that is still in its place.
    void Remove(const clsItem* entries, std::uint32_t position) noexcept;

    // Forgets one entry that is still in its place; the next one of its name takes over.
    void RemoveAt(const clsItemList& list, std::uint32_t position) noexcept;

  private:
    struct scSlot {
        std::uint32_t used : 1;
        std::uint32_t repeats : 1;
        std::uint32_t position : 30;
    };

    std::uint32_t Home(std::uint32_t key) const { return (key * 0x9E3779B1u) >> shift_; }
    std::uint32_t SlotOf(const clsItem* entries, std::uint32_t key, std::u16string_view name) const;
    void Put(const clsItem* entries, std::uint32_t position) noexcept;
    bool Resize(const clsItem* entries, std::uint32_t bits) noexcept;

    clsSlab& slab_;
    scSlot* slots_ = nullptr;
    std::uint32_t capacity_ = 0; // a power of two
    std::uint32_t shift_ = 32;
    std::uint32_t count_ = 0;
};

} // namespace tvut
