#include "platform/process_heap.h"

#include <atomic>
#include <windows.h>

namespace tvut {

namespace {

std::atomic<std::size_t> use{0};

} // namespace

void* PlatformProcessHeapAlloc(std::size_t bytes) noexcept {
    void* const block = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, bytes);
    if (block)
        use.fetch_add(1, std::memory_order_relaxed);
    return block;
}

void PlatformProcessHeapFree(void* block) noexcept {
    if (block && HeapFree(GetProcessHeap(), 0, block))
        use.fetch_sub(1, std::memory_order_relaxed);
}

std::size_t PlatformProcessHeapUse() noexcept {
    return use.load(std::memory_order_relaxed);
}

} // namespace tvut
