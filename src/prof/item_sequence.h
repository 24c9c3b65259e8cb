// The entries of one list by position: one block while they are few, segments of equal size then; found by
// walking.
//
// A long list never moves what it holds. Growing by copying into ever larger blocks would touch
// several times the memory, and in a 32-bit process a block of tens of megabytes may not be had.
#pragma once

#include "prof/item.h"
#include "prof/slab.h"
#include "text/units.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

namespace tvut {

// What a lookup found: the first entry of that name and kind, and whether there may be more.
struct scMatch {
    static constexpr std::uint32_t notFound = 0xFFFFFFFFu;

    std::uint32_t position;
    bool mayRepeat;
};

class clsItemSequence {
  public:
    // Positions run from 0 to End() - 1.
    std::uint32_t End() const { return used_; }
    clsItem& At(std::uint32_t position) {
        return IsOneBlock() ? block_[position] : SegmentOf(position)[position % segmentLength];
    }
    const clsItem& At(std::uint32_t position) const {
        return const_cast<clsItemSequence*>(this)->At(position);
    }

    // The entries from a position on that follow each other in memory; none only at the end.
    std::span<const clsItem> RunFrom(std::uint32_t position) const {
        if (position == used_)
            return {};
        return {&At(position), std::min(used_ - position, RunLength(position))};
    }

    // The next entry of that key and name at or after a position; scMatch::notFound if none.
    std::uint32_t FindFrom(std::uint32_t position, std::uint32_t key, std::u16string_view name) const {
        while (position < used_) {
            for (const clsItem& entry : RunFrom(position)) {
                if (entry.key == key && UtilpEqual(entry.Name(), name))
                    return position;
                ++position;
            }
        }
        return scMatch::notFound;
    }

    // The place after the last entry. It counts only once Added was called, so that a failure in between
    // leaves all as it was. Throws std::bad_alloc.
    clsItem& Next(clsSlab& slab) {
        if (used_ == capacity_)
            Grow(slab);
        return At(used_);
    }
    void Added() { ++used_; }

    // Makes room for some entries in all, as long as they are one block. Throws std::bad_alloc.
    void Reserve(clsSlab& slab, std::uint32_t count) {
        if (count > capacity_ && count <= segmentLength)
            MoveTo(slab, count);
    }

    // Takes the last entry off.
    clsItem TakeLast() { return At(--used_); }
    // Drops the entries from an end on.
    void Cut(std::uint32_t end) { used_ = end; }

    // Gives all memory back.
    void Free(clsSlab& slab) noexcept;

  private:
    static constexpr std::uint32_t segmentLength = 1024;
    static constexpr std::uint32_t firstCapacity = 2;
    static constexpr std::uint32_t secondCapacity = 8;

    clsItem* SegmentOf(std::uint32_t position) const { return segments_[position / segmentLength]; }
    std::uint32_t SegmentCount() const { return capacity_ / segmentLength; }
    bool IsOneBlock() const { return capacity_ <= segmentLength; }

    // The number of places from a position on that follow each other in memory.
    std::uint32_t RunLength(std::uint32_t position) const {
        return IsOneBlock() ? capacity_ - position : segmentLength - position % segmentLength;
    }

    // Makes room for at least one more entry. Throws std::bad_alloc, changing nothing.
    void Grow(clsSlab& slab);
    void GrowBlock(clsSlab& slab);
    void MoveTo(clsSlab& slab, std::uint32_t capacity);
    void AddSegment(clsSlab& slab);
    void GrowTable(clsSlab& slab);

    union {
        clsItem* block_ = nullptr; // up to segmentLength entries
        clsItem** segments_;       // beyond
    };
    std::uint32_t capacity_ = 0;
    std::uint32_t used_ = 0;
};

} // namespace tvut
