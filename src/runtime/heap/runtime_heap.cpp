#include "runtime/heap/runtime_heap.h"

#include "runtime/heap/heap_node.h"

#include <cstdlib>

namespace tvut {

namespace {

std::int32_t* SizeWordOf(void* payload) noexcept {
    return static_cast<std::int32_t*>(payload) - 1;
}

} // namespace

void* UtilpRuntimeAllocate(std::int32_t size, std::uint32_t flags) noexcept {
    if (size < 0)
        return nullptr;
    const auto bytes = static_cast<std::size_t>(size);
    auto* const word = static_cast<std::int32_t*>(std::malloc(bytes + sizeof(std::int32_t)));
    if (!word)
        return nullptr;
    *word = size;
    if ((flags & heapFlag::zero) != 0)
        std::memset(word + 1, 0, bytes);
    else if ((flags & heapFlag::fill) != 0)
        std::memset(word + 1, freshFill, bytes);
    return word + 1;
}

void UtilpRuntimeFree(void* payload) noexcept {
    if (payload)
        std::free(SizeWordOf(payload));
}

std::int32_t UtilpRuntimeSize(void* payload) noexcept {
    auto size = static_cast<std::int32_t>(HeapResult::badObject);
    auto read = [&] { size = *SizeWordOf(payload); };
    if (!payload)
        return 0;
    PlatformGuarded(read);
    return size;
}

} // namespace tvut
