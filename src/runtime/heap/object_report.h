// Objects in diagnostic output: dumps of their bytes, who allocated them, and what is wrong with them. All
// are lines of the group that is open.
#pragma once

#include "runtime/heap/heap_node.h"

namespace tvut {

// The first bytes of a DEBUG object and the call stack of its allocation. Nothing unless the object's magic
// is right.
void UtilpDumpObject(scDebugHeader* header) noexcept;

// What there is to say of an object whose fence is damaged, with its dump.
void UtilpReportOverrun(scDebugHeader* header) noexcept;

// What is said of a call that got no object: the word found where a mark should be.
void UtilpReportBadPointer(const clsDiagnosticLine& call, std::uint32_t mark,
                           std::u16string_view end) noexcept;

// A title and a frame a line: the callers' alone, where there are any.
void UtilpReportCallStack(std::u16string_view title, const scCallStack* stack) noexcept;

// How many objects a heap holds, who made the heap, and a dump of each DEBUG object.
void UtilpReportObjects(clsHeapNode& heap) noexcept;

} // namespace tvut
