// Names packed at compile time: numbers, where each one's name begins, and all names in one block.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tvut {

struct scMessageName {
    std::uint16_t message;
    std::string_view name;
};

// Characters of all names, a terminator after each.
template <std::size_t count>
constexpr std::size_t UtilpPackedLength(const scMessageName (&names)[count]) {
    std::size_t length = 0;
    for (const scMessageName& row : names)
        length += row.name.size() + 1;
    return length;
}

template <std::size_t count, std::size_t length>
class clsPackedNames {
    static_assert(length <= UINT16_MAX, "positions have two bytes");

  public:
    consteval explicit clsPackedNames(const scMessageName (&names)[count]) {
        std::size_t end = 0;
        for (std::size_t row = 0; row < count; ++row) {
            numbers_[row] = names[row].message;
            positions_[row] = static_cast<std::uint16_t>(end);
            for (const char character : names[row].name)
                characters_[end++] = character;
            characters_[end++] = 0;
        }
    }

    constexpr std::span<const std::uint16_t> Numbers() const { return numbers_; }
    constexpr std::string_view Name(std::size_t row) const { return characters_.data() + positions_[row]; }

  private:
    std::array<std::uint16_t, count> numbers_{}, positions_{};
    std::array<char, length> characters_{};
};

} // namespace tvut
