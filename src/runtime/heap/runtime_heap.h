// The heap without a handle: objects of the C runtime's allocator, each a word of size with the payload after
// it. They are checked and counted by nobody.
#pragma once

#include <cstdint>

namespace tvut {

// Null for a negative size, and when there is no memory. The flags are those of allocations in heaps.
void* UtilpRuntimeAllocate(std::int32_t size, std::uint32_t flags) noexcept;

void UtilpRuntimeFree(void* payload) noexcept;

// Bytes of payload, 0 for null, a negative code where nothing can be read.
std::int32_t UtilpRuntimeSize(void* payload) noexcept;

} // namespace tvut
