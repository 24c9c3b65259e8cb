// Digits of a number, for texts that are made without memory and without a locale.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

constexpr std::string_view lowerDigits = "0123456789abcdef";
constexpr std::string_view upperDigits = "0123456789ABCDEF";

// At least a given count of them, at the end of a buffer.
template <class Character>
class clsDigits {
  public:
    constexpr clsDigits(std::uint32_t number, std::uint32_t base, std::size_t least,
                        std::string_view alphabet = lowerDigits) noexcept {
        least = std::min(least, digits_.size());
        do {
            digits_[--begin_] = static_cast<Character>(alphabet[number % base]);
            number /= base;
        } while (number != 0 || digits_.size() - begin_ < least);
    }
    constexpr std::basic_string_view<Character> View() const noexcept {
        return {digits_.data() + begin_, digits_.size() - begin_};
    }

  private:
    std::array<Character, 16> digits_;
    std::size_t begin_ = digits_.size();
};

} // namespace tvut
