// The memory of a tree's lists, which are blocks of one size.
//
// A caller's list handle is the address of a list, or of anything at all. So lists stand apart from the
// tree's other memory, in a few pieces whose bounds are known: whether an address is that of a list is found
// out by comparing it, and memory that is not ours is never looked at.
#pragma once

#include "prof/slab.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tvut {

class clsListMemory {
  public:
    // A block in use must begin with a pointer that is not null.
    clsListMemory(clsSlab& slab, std::size_t blockSize) : slab_(slab), blockSize_(blockSize) {}
    clsListMemory(const clsListMemory&) = delete;
    clsListMemory& operator=(const clsListMemory&) = delete;
    ~clsListMemory() = default; // the slab frees everything

    void* Allocate(); // throws std::bad_alloc
    void Free(void* block) noexcept;

    // Whether a block in use begins at an address, whatever that is. Calls about one piece of memory after
    // the other cost two comparisons.
    bool Holds(const void* address) const noexcept {
        const auto at = reinterpret_cast<std::uintptr_t>(address);
        if (at - lastBegin_ >= lastBytes_ && !FindPiece(at))
            return false;
        if ((at - lastBegin_) % blockSize_ != 0)
            return false;
        const void* first;
        std::memcpy(&first, address, sizeof first);
        return first != nullptr;
    }

  private:
    struct scFree {
        const void* nothing; // null
        scFree* next;
    };
    struct scPiece {
        std::uintptr_t begin;
        std::size_t bytes;
    };

    void AddPiece();
    void Insert(scPiece piece) noexcept;
    void GrowTable();
    bool FindPiece(std::uintptr_t at) const noexcept;

    clsSlab& slab_;
    const std::size_t blockSize_;
    scFree* free_ = nullptr;
    char* next_ = nullptr; // blocks that were never in use are zero
    char* end_ = nullptr;
    scPiece* pieces_ = nullptr; // by address
    std::size_t count_ = 0;
    std::size_t capacity_ = 0;
    // The piece that Holds met last.
    mutable std::uintptr_t lastBegin_ = 0;
    mutable std::size_t lastBytes_ = 0;
};

} // namespace tvut
