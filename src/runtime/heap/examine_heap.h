// Measuring and checking a heap and its objects.
//
// Everything here is called under the global lock.
#pragma once

#include "runtime/heap/heap_node.h"

namespace tvut {

// Bytes of payload, or a negative code.
std::int32_t UtilpObjectSize(clsHeapNode& heap, void* payload) noexcept;

// The whole heap, or the block of one object, and the objects of a DEBUG heap.
HeapResult UtilpValidateHeap(clsHeapNode& heap, void* payload) noexcept;

// Examines every DEBUG object of the heap and reports the damaged ones; the heap itself may be damaged, too.
HeapResult UtilpCheckObjects(clsHeapNode& heap) noexcept;

HeapResult UtilpShrinkHeap(clsHeapNode& heap) noexcept;

// The size of the last busy block of the heap.
std::int32_t UtilpHeapSize(clsHeapNode& heap, bool objectsOnly) noexcept;

} // namespace tvut
