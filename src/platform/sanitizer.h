// The address sanitizer, as the core sees it: whether it watches this build, and memory that it is to guard.
//
// It judges by the byte: what stands after the end of a string is out of bounds to it even where the
// processor may read it.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define TVUT_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TVUT_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef TVUT_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace tvut {

#ifdef TVUT_ADDRESS_SANITIZER

constexpr bool isAddressSanitized = true;

// From now on it is an error to touch these bytes, or no error any more.
inline void PlatformPoison(const void* block, std::size_t bytes) noexcept {
    __asan_poison_memory_region(block, bytes);
}
inline void PlatformUnpoison(const void* block, std::size_t bytes) noexcept {
    __asan_unpoison_memory_region(block, bytes);
}

#else

constexpr bool isAddressSanitized = false;

inline void PlatformPoison(const void*, std::size_t) noexcept {}
inline void PlatformUnpoison(const void*, std::size_t) noexcept {}

#endif

} // namespace tvut
