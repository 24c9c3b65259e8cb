// Objects in diagnostic output: dumps of their bytes, and who allocated them. All are lines of the group
// that is open.
#pragma once

#include "runtime/heap/heap_node.h"

namespace tvut {

// The first bytes of a DEBUG object and the call stack of its allocation. Nothing unless the object's magic
// is right.
void UtilpDumpObject(scDebugHeader* header) noexcept;

// A title and a frame a line: module, offset, and the function where the system knows it.
void UtilpReportCallStack(std::u16string_view title, const scCallStack* stack) noexcept;

// How many objects a heap holds, who made the heap, and a dump of each DEBUG object.
void UtilpReportObjects(clsHeapNode& heap) noexcept;

} // namespace tvut
