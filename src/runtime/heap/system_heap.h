// The services of the system's heaps that are looked up by name, and the walk.
#pragma once

#include "runtime/heap/heap_node.h"

namespace tvut {

// Looked up once, when the library is loaded: later on, the loader's lock may be somebody's who waits for
// ours. What is missing is null.
struct scHeapServices {
    BOOL(WINAPI* walk)(HANDLE, PROCESS_HEAP_ENTRY*);
    BOOL(WINAPI* lock)(HANDLE);
    BOOL(WINAPI* unlock)(HANDLE);
    SIZE_T(WINAPI* compact)(HANDLE, DWORD);
    BOOL(WINAPI* validate)(HANDLE, DWORD, const void*);

    bool CanWalk() const noexcept { return walk && lock && unlock; }
};

const scHeapServices& UtilpHeapServices() noexcept;

// Sees one busy block; a negative result ends the walk.
using HeapBlockVisitor = int (*)(void* context, void* block, std::size_t bytes);

// Visits every busy block while the heap is locked. False when the heap could not be walked to its end
// because it is damaged: the system may say so, or come to an end without having met every block. Where it
// failed in the heap or went in a circle, the heap is marked as broken.
bool UtilpWalkHeap(clsHeapNode& heap, HeapBlockVisitor visitor, void* context) noexcept;

template <class Visitor>
bool UtilpWalkHeap(clsHeapNode& heap, Visitor& visitor) noexcept {
    return UtilpWalkHeap(
        heap,
        [](void* context, void* block, std::size_t bytes) {
            return (*static_cast<Visitor*>(context))(block, bytes);
        },
        &visitor);
}

} // namespace tvut
