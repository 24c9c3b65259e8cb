// Making objects.
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

// Takes a handle that may be none. Null when there is no memory. `exception` is the system's, where the heap
// was made to raise one.
void* UtilpAllocateObject(clsHeapNode* heap, const scAllocation& wanted, unsigned long& exception) noexcept;

} // namespace tvut
