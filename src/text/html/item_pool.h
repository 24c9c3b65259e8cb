// Items by number. Those that are freed are used again, last ones first: they are in the cache, while memory
// that is touched for the first time costs more than all the rest.
#pragma once

#include "platform/inline.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace tvut {

// Free items are linked by a member.
template <class Item, std::uint32_t Item::*next>
class clsItemPool {
  public:
    using Index = std::uint32_t;
    static constexpr Index none = 0xFFFFFFFF;

    // Room for what is expected costs nothing until it is touched, while growing touches twice as much.
    explicit clsItemPool(std::size_t expected)
        : items_(std::make_unique_for_overwrite<Item[]>(expected)), capacity_(expected) {}

    Item& operator[](Index item) { return items_[item]; }
    const Item& operator[](Index item) const { return items_[item]; }

    // Its contents are undefined. Items may move.
    Index Add() {
        if (free_ != none)
            return std::exchange(free_, items_[free_].*next);
        if (count_ == capacity_)
            Grow();
        return static_cast<Index>(count_++);
    }
    // A row of them, linked already.
    void Free(Index first, Index last) {
        items_[last].*next = free_;
        free_ = first;
    }

  private:
    TVUT_NEVER_INLINE void Grow() {
        const std::size_t capacity = std::max<std::size_t>(2 * capacity_, 16);
        auto items = std::make_unique_for_overwrite<Item[]>(capacity);
        std::copy_n(items_.get(), count_, items.get());
        items_ = std::move(items);
        capacity_ = capacity;
    }

    std::unique_ptr<Item[]> items_;
    std::size_t count_ = 0;
    std::size_t capacity_;
    Index free_ = none;
};

} // namespace tvut
