// The objects of a heap: making, freeing, measuring, checking them.
//
// Whatever a caller does to an object or passes for one is reported, answered by a code, and survived: all
// that may be damaged is read under a guard. A heap whose own memory is so damaged that the system fails
// in it is not entered again.
//
// Everything here is called under the global lock.
#pragma once

#include "runtime/heap/heap_node.h"

namespace tvut {

struct scAllocation {
    std::int32_t size; // bytes of payload
    std::uint32_t flags;
    std::uint32_t tag;
};

// Both take a handle that may be none: it is looked at under the same guard as the object.
// Null when there is no memory. `exception` is the system's, where the heap was made to raise one.
void* UtilpAllocateObject(clsHeapNode* heap, const scAllocation& wanted, unsigned long& exception) noexcept;

// `silent`: nobody listens, so that nothing need be filled or said of a sound object.
HeapResult UtilpFreeObject(clsHeapNode* heap, void* payload, bool silent) noexcept;

// Bytes of payload, or a negative code.
std::int32_t UtilpObjectSize(clsHeapNode& heap, void* payload) noexcept;

// The whole heap, or the block of one object, and the objects of a DEBUG heap.
HeapResult UtilpValidateHeap(clsHeapNode& heap, void* payload) noexcept;

HeapResult UtilpShrinkHeap(clsHeapNode& heap) noexcept;

// The size of the last busy block of the heap.
std::int32_t UtilpHeapSize(clsHeapNode& heap, bool objectsOnly) noexcept;

} // namespace tvut
