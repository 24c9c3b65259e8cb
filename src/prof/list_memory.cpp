// Pieces double up to 64 KB, so even the largest tree has few of them, and they are kept in order: an address
// is looked for by halving. The piece that answered last is tried first, because calls tend to be about lists
// that were made together. A free block begins with a null pointer where a list has its tree, which is how a
// stale handle is recognised.
#include "prof/list_memory.h"

#include <algorithm>
#include <new>

namespace tvut {

namespace {

constexpr std::size_t blocksOfFirstPiece = 8;
constexpr std::size_t largestPiece = 64 * 1024;

} // namespace

void* clsListMemory::Allocate() {
    if (scFree* const block = free_) {
        free_ = block->next;
        return block;
    }
    if (next_ == end_)
        AddPiece();
    char* const block = next_;
    next_ += blockSize_;
    return block;
}

void clsListMemory::Free(void* block) noexcept {
    free_ = new (block) scFree{nullptr, free_};
}

// Each piece is twice as large as the one before, up to a size.
void clsListMemory::AddPiece() {
    GrowTable();
    const std::size_t largest = largestPiece / blockSize_;
    const std::size_t blocks = std::min(blocksOfFirstPiece << std::min<std::size_t>(count_, 16), largest);
    const std::size_t bytes = blocks * blockSize_;
    next_ = static_cast<char*>(std::memset(slab_.Allocate(bytes), 0, bytes));
    end_ = next_ + bytes;
    Insert({reinterpret_cast<std::uintptr_t>(next_), bytes});
}

void clsListMemory::GrowTable() {
    if (count_ < capacity_)
        return;
    const std::size_t capacity = std::max<std::size_t>(4, capacity_ * 2);
    auto* const pieces = static_cast<scPiece*>(slab_.Allocate(capacity * sizeof(scPiece)));
    std::copy_n(pieces_, count_, pieces);
    slab_.Free(pieces_, capacity_ * sizeof(scPiece));
    pieces_ = pieces;
    capacity_ = capacity;
}

void clsListMemory::Insert(scPiece piece) noexcept {
    scPiece* at = pieces_ + count_++;
    for (; at != pieces_ && at[-1].begin > piece.begin; --at)
        *at = at[-1];
    *at = piece;
}

bool clsListMemory::FindPiece(std::uintptr_t at) const noexcept {
    const scPiece* const after =
        std::upper_bound(pieces_, pieces_ + count_, at,
                         [](std::uintptr_t value, const scPiece& piece) { return value < piece.begin; });
    if (after == pieces_ || at - after[-1].begin >= after[-1].bytes)
        return false;
    lastBegin_ = after[-1].begin;
    lastBytes_ = after[-1].bytes;
    return true;
}

} // namespace tvut
