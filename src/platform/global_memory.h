// Global memory blocks, which OLE and the clipboard hand around.
#pragma once

#include "platform/owned.h"

#include <cstddef>

namespace tvut {

struct scGlobalMemoryPolicy {
    using Value = HGLOBAL;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { GlobalFree(value); }
};
using clsGlobalMemory = clsOwned<scGlobalMemoryPolicy>;

// A block that is locked while the object lives. An empty block may have no data.
class clsLockedMemory {
  public:
    explicit clsLockedMemory(HGLOBAL block) noexcept : block_(block) {
        SetLastError(NO_ERROR);
        size_ = GlobalSize(block); // 0 for what is no block, too
        isBlock_ = size_ != 0 || GetLastError() == NO_ERROR;
        data_ = isBlock_ ? GlobalLock(block) : nullptr;
        isBlock_ = isBlock_ && (data_ || size_ == 0);
    }
    clsLockedMemory(const clsLockedMemory&) = delete;
    clsLockedMemory& operator=(const clsLockedMemory&) = delete;
    ~clsLockedMemory() {
        if (data_)
            GlobalUnlock(block_);
    }
    bool IsBlock() const noexcept { return isBlock_; }
    void* Data() const noexcept { return data_; }
    std::size_t Size() const noexcept { return size_; }

  private:
    HGLOBAL block_;
    std::size_t size_;
    void* data_;
    bool isBlock_;
};

} // namespace tvut
