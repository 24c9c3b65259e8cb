// Freeing objects.
//
// Whatever a caller has done to an object or passes for one is reported, answered by a code, and survived. An
// object that is damaged is not freed.
//
// Everything here is called under the global lock.
#pragma once

#include "runtime/heap/heap_node.h"

namespace tvut {

// Takes a handle that may be none. `silent`: nobody listens, so that nothing need be filled or said of a
// sound object.
HeapResult UtilpFreeObject(clsHeapNode* heap, void* payload, bool silent) noexcept;

} // namespace tvut
