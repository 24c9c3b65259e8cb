// An array that grows, and that takes memory only once it outgrows the room it has in itself.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <type_traits>

namespace tvut {

template <class T, std::size_t inlineRoom>
class clsSmallBuffer {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    clsSmallBuffer() = default;
    clsSmallBuffer(const clsSmallBuffer&) = delete;
    clsSmallBuffer& operator=(const clsSmallBuffer&) = delete;

    std::size_t Size() const { return size_; }
    T& operator[](std::size_t at) { return items_[at]; }
    void Push(const T& item) {
        if (size_ == room_)
            Grow(2 * room_);
        items_[size_++] = item;
    }
    T Pop() { return items_[--size_]; }
    void Cut(std::size_t size) { size_ = size; }
    void Assign(std::size_t count, const T& item) {
        if (count > room_)
            Grow(count);
        size_ = count;
        std::fill_n(items_, count, item);
    }

  private:
    void Grow(std::size_t room) {
        auto block = std::make_unique_for_overwrite<T[]>(room);
        std::copy_n(items_, size_, block.get());
        block_ = std::move(block);
        items_ = block_.get();
        room_ = room;
    }

    std::array<T, inlineRoom> inline_;
    std::unique_ptr<T[]> block_;
    T* items_ = inline_.data();
    std::size_t size_ = 0;
    std::size_t room_ = inlineRoom;
};

} // namespace tvut
