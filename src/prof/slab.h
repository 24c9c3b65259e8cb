// The memory of one profile's tree: small blocks in size classes, large ones from the ordinary
// allocator, all of it given back at once when the profile ends.
//
// A tree of a hundred thousand items makes some two hundred thousand blocks of a few dozen bytes. A
// block from here costs a few nanoseconds and no header, and closing a profile frees chunks instead
// of walking the tree.
#pragma once

#include "platform/sanitizer.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tvut {

class clsSlab {
  public:
    clsSlab() = default;
    clsSlab(const clsSlab&) = delete;
    clsSlab& operator=(const clsSlab&) = delete;
    ~clsSlab();

    // A block of at least the given size, aligned to 8 bytes. Throws std::bad_alloc.
    void* Allocate(std::size_t bytes) {
        if (bytes > largestSmall)
            return AllocateLarge(bytes);
        bytes = RoundUp(bytes);
        scFree*& free = free_[bytes / granularity];
        if (scFree* const block = free) {
            PlatformUnpoison(block, bytes);
            free = block->next;
            return block;
        }
        if (static_cast<std::size_t>(end_ - next_) < bytes)
            AddChunk();
        char* const block = next_;
        next_ += bytes;
        PlatformUnpoison(block, bytes);
        return block;
    }

    // Takes back a block; bytes is what it was allocated with.
    void Free(void* block, std::size_t bytes) noexcept;

  private:
    static constexpr std::size_t granularity = 8;
    static constexpr std::size_t largestSmall = 1024;
    static constexpr std::size_t smallestChunk = 2048;
    static constexpr std::size_t largestChunk = 256 * 1024;

    struct scFree {
        scFree* next;
    };
    struct scChunk {
        scChunk* next;
        std::size_t padding;
    };
    struct scLarge {
        scLarge* next;
        scLarge* previous;
    };

    static constexpr std::size_t RoundUp(std::size_t bytes) {
        return (bytes + granularity - 1) & ~(granularity - 1);
    }
    void AddChunk();
    void* AllocateLarge(std::size_t bytes);
    void FreeLarge(void* block) noexcept;

    std::array<scFree*, largestSmall / granularity + 1> free_{};
    char* next_ = nullptr;
    char* end_ = nullptr;
    scChunk* chunks_ = nullptr;
    scLarge* large_ = nullptr;
    std::size_t chunkSize_ = smallestChunk;
};

} // namespace tvut
