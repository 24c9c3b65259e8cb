// Small blocks are cut from chunks that double up to a size; a freed one goes to the list of its size class
// and is the next one handed out, while it is still in the processor's cache. Large blocks stand in a list of
// their own, so that they can be freed alone and all at once. Small blocks are never merged or given back
// before the end: what a profile frees it mostly needs again.
//
// Under the address sanitizer, memory that is not handed out may not be touched.
#include "prof/slab.h"

#include <algorithm>
#include <limits>
#include <new>

namespace tvut {

clsSlab::~clsSlab() {
    while (chunks_) {
        scChunk* const chunk = chunks_;
        chunks_ = chunk->next;
        ::operator delete(chunk);
    }
    while (large_) {
        scLarge* const block = large_;
        large_ = block->next;
        ::operator delete(block);
    }
}

void clsSlab::Free(void* block, std::size_t bytes) noexcept {
    if (!block)
        return;
    if (bytes > largestSmall) {
        FreeLarge(block);
        return;
    }
    bytes = RoundUp(bytes);
    auto* const entry = static_cast<scFree*>(block);
    entry->next = free_[bytes / granularity];
    free_[bytes / granularity] = entry;
    PlatformPoison(block, bytes);
}

void clsSlab::AddChunk() {
    auto* const chunk = static_cast<scChunk*>(::operator new(chunkSize_));
    chunk->next = chunks_;
    chunks_ = chunk;
    next_ = reinterpret_cast<char*>(chunk + 1);
    end_ = reinterpret_cast<char*>(chunk) + chunkSize_;
    PlatformPoison(next_, static_cast<std::size_t>(end_ - next_));
    chunkSize_ = std::min(chunkSize_ * 2, largestChunk);
}

void* clsSlab::AllocateLarge(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::size_t>::max() - sizeof(scLarge))
        throw std::bad_alloc();
    auto* const block = static_cast<scLarge*>(::operator new(sizeof(scLarge) + bytes));
    block->next = large_;
    block->previous = nullptr;
    if (large_)
        large_->previous = block;
    large_ = block;
    return block + 1;
}

void clsSlab::FreeLarge(void* memory) noexcept {
    scLarge* const block = static_cast<scLarge*>(memory) - 1;
    if (block->next)
        block->next->previous = block->previous;
    if (block->previous)
        block->previous->next = block->next;
    else
        large_ = block->next;
    ::operator delete(block);
}

} // namespace tvut
