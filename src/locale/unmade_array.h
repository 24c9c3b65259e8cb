// Room on the stack for objects of which few are used: none is made until it is assigned.
#pragma once

#include <cstddef>
#include <new>
#include <span>
#include <type_traits>

namespace tvut {

template <class T, std::size_t Count>
class clsUnmadeArray {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

  public:
    // The room; what is in it may be assigned, and read afterwards.
    std::span<T, Count> Room() noexcept {
        return std::span<T, Count>(std::launder(reinterpret_cast<T*>(bytes_)), Count);
    }

  private:
    alignas(T) std::byte bytes_[Count * sizeof(T)];
};

} // namespace tvut
