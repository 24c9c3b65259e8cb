#include "platform/process_heap.h"

#include <windows.h>

namespace tvut {

void* PlatformProcessHeapAlloc(std::size_t bytes) noexcept {
    return HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, bytes);
}

void PlatformProcessHeapFree(void* block) noexcept {
    if (block)
        HeapFree(GetProcessHeap(), 0, block);
}

} // namespace tvut
