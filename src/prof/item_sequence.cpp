// How the memory of a sequence grows: blocks by half their size up to one segment, then a segment at a time,
// found through a table of segments that doubles. The first segment is the last block, so going over from one
// to the other moves nothing.
#include "prof/item_sequence.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <new>

namespace tvut {

namespace {

constexpr std::size_t BlockBytes(std::uint32_t capacity) {
    return capacity * sizeof(clsItem);
}

// A table of segments is as long as the power of two that holds their number.
std::size_t TableBytes(std::uint32_t segmentCount) {
    return std::bit_ceil(segmentCount) * sizeof(clsItem*);
}

} // namespace

void clsItemSequence::Grow(clsSlab& slab) {
    if (capacity_ < segmentLength)
        GrowBlock(slab);
    else
        AddSegment(slab);
}

void clsItemSequence::GrowBlock(clsSlab& slab) {
    std::uint32_t capacity = firstCapacity;
    if (capacity_ != 0)
        capacity = std::clamp(capacity_ + capacity_ / 2, secondCapacity, segmentLength);
    MoveTo(slab, capacity);
}

// To a larger block.
void clsItemSequence::MoveTo(clsSlab& slab, std::uint32_t capacity) {
    auto* const block = static_cast<clsItem*>(slab.Allocate(BlockBytes(capacity)));
    if (capacity_ != 0)
        std::memcpy(static_cast<void*>(block), block_, BlockBytes(capacity_));
    slab.Free(block_, BlockBytes(capacity_));
    block_ = block;
    capacity_ = capacity;
}

void clsItemSequence::AddSegment(clsSlab& slab) {
    if (capacity_ > std::numeric_limits<std::uint32_t>::max() / sizeof(clsItem))
        throw std::bad_alloc();
    auto* const segment = static_cast<clsItem*>(slab.Allocate(BlockBytes(segmentLength)));
    try {
        GrowTable(slab);
    } catch (...) {
        slab.Free(segment, BlockBytes(segmentLength));
        throw;
    }
    segments_[SegmentCount()] = segment;
    capacity_ += segmentLength;
}

// Makes room for one more segment in the table; the one block there was so far becomes the first.
void clsItemSequence::GrowTable(clsSlab& slab) {
    const std::uint32_t count = SegmentCount();
    if (!std::has_single_bit(count))
        return;
    auto** const table = static_cast<clsItem**>(slab.Allocate(TableBytes(count + 1)));
    if (IsOneBlock()) {
        table[0] = block_;
    } else {
        std::memcpy(table, segments_, count * sizeof(clsItem*));
        slab.Free(segments_, TableBytes(count));
    }
    segments_ = table;
}

void clsItemSequence::Free(clsSlab& slab) noexcept {
    if (IsOneBlock()) {
        slab.Free(block_, BlockBytes(capacity_));
    } else {
        for (std::uint32_t i = 0; i < SegmentCount(); ++i)
            slab.Free(segments_[i], BlockBytes(segmentLength));
        slab.Free(segments_, TableBytes(SegmentCount()));
    }
    block_ = nullptr;
    capacity_ = used_ = 0;
}

} // namespace tvut
