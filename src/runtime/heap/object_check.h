// Whether DEBUG objects are whole: the magic in front, the fence after it.
#pragma once

#include "runtime/heap/heap_node.h"

namespace tvut {

// The DEBUG object of this heap that fills a block; null when the block holds none.
scDebugHeader* UtilpDebugObject(const clsHeapNode& heap, void* block, std::size_t bytes) noexcept;

enum class Damage { none, magic, fence };

// Reads an object that may be damaged in any way, its size included.
Damage UtilpExamineObject(scDebugHeader* header) noexcept;

} // namespace tvut
