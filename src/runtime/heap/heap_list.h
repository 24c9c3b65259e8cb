// The heaps of a job: how they come and go.
//
// Everything here is called under the global lock.
#pragma once

#include "runtime/heap/heap_node.h"

namespace tvut {

// Null for refused flags, and when there is no memory.
clsHeapNode* UtilpCreateHeap(clsModuleNode& module, std::u16string_view name, std::uint32_t flags) noexcept;

// Reports what is left in the heap and destroys it.
HeapResult UtilpDeleteHeap(clsHeapNode& heap) noexcept;

// What a job does with the heaps that are left when it is closed.
void UtilpDestroyLeftHeaps(clsModuleNode& module) noexcept;

} // namespace tvut
