// The entries of one list by position: one block while they are few, segments of equal size then.
//
// A long list never moves what it holds. Growing by copying into ever larger blocks would touch
// several times the memory, and in a 32-bit process a block of tens of megabytes may not be had.
#pragma once

#include "prof/item.h"
#include "prof/slab.h"

#include <cstdint>

namespace tvut {

class clsItemSequence {
  public:
    clsItem& At(std::uint32_t position) {
        return IsOneBlock() ? block_[position] : SegmentOf(position)[position % segmentLength];
    }
    const clsItem& At(std::uint32_t position) const {
        return const_cast<clsItemSequence*>(this)->At(position);
    }

    // The number of places from a position on that follow each other in memory.
    std::uint32_t RunLength(std::uint32_t position) const {
        return IsOneBlock() ? capacity_ - position : segmentLength - position % segmentLength;
    }

    std::uint32_t Capacity() const { return capacity_; }

    // Makes room for at least one more entry than there is room for now. Throws std::bad_alloc, changing
    // nothing.
    void Grow(clsSlab& slab);

    // Gives all memory back.
    void Free(clsSlab& slab) noexcept;

  private:
    static constexpr std::uint32_t segmentLength = 1024;
    static constexpr std::uint32_t firstCapacity = 2;
    static constexpr std::uint32_t secondCapacity = 8;

    clsItem* SegmentOf(std::uint32_t position) const { return segments_[position / segmentLength]; }
    std::uint32_t SegmentCount() const { return capacity_ / segmentLength; }
    bool IsOneBlock() const { return capacity_ <= segmentLength; }

    void GrowBlock(clsSlab& slab);
    void AddSegment(clsSlab& slab);
    void GrowTable(clsSlab& slab);

    union {
        clsItem* block_ = nullptr; // up to segmentLength entries
        clsItem** segments_;       // beyond
    };
    std::uint32_t capacity_ = 0;
};

} // namespace tvut
