// Memory from the process heap, for records that outlive calls and must not come from a heap that the
// library itself manages. Nothing throws.
#pragma once

#include <cstddef>

namespace tvut {

// Null when there is no memory; zeroed otherwise.
void* PlatformProcessHeapAlloc(std::size_t bytes) noexcept;
void PlatformProcessHeapFree(void* block) noexcept;

} // namespace tvut
