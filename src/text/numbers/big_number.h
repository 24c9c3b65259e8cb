// A whole number of up to 3072 bits, for what must be exact between binary and decimal. It takes no memory.
//
// The most that a conversion needs is 2600 bits: 769 digits, or 54 bits times the 1093rd power of five.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>

namespace tvut {

class clsBigNumber {
  public:
    constexpr explicit clsBigNumber(std::uint64_t value) {
        for (; value != 0; value >>= 32)
            words_[length_++] = static_cast<std::uint32_t>(value);
    }

    constexpr bool IsZero() const { return length_ == 0; }
    constexpr std::size_t Bits() const {
        return length_ == 0 ? 0
                            : 32 * length_ - static_cast<std::size_t>(std::countl_zero(words_[length_ - 1]));
    }

    constexpr void MultiplyAdd(std::uint32_t factor, std::uint32_t addend) {
        std::uint64_t carry = addend;
        for (std::size_t i = 0; i < length_; ++i) {
            carry += std::uint64_t{words_[i]} * factor;
            words_[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0)
            words_[length_++] = static_cast<std::uint32_t>(carry);
    }

    constexpr void Add(const clsBigNumber& other) {
        std::uint64_t carry = 0;
        for (std::size_t i = 0; i < std::max(length_, other.length_) || carry != 0; ++i) {
            carry += std::uint64_t{words_[i]} + other.words_[i];
            words_[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
            length_ = std::max(length_, i + 1);
        }
    }

    // Of what is not larger.
    constexpr void Subtract(const clsBigNumber& other) {
        std::uint64_t borrowed = 0;
        for (std::size_t i = 0; i < length_; ++i) {
            const std::uint64_t difference = std::uint64_t{words_[i]} - other.words_[i] - borrowed;
            words_[i] = static_cast<std::uint32_t>(difference);
            borrowed = difference >> 63;
        }
        Trim();
    }

    constexpr void MultiplyByPowerOfFive(unsigned power) {
        constexpr unsigned most = 13; // the largest power in 32 bits
        constexpr std::uint32_t largest = 1'220'703'125;
        for (; power >= most; power -= most)
            MultiplyAdd(largest, 0);
        std::uint32_t rest = 1;
        for (; power != 0; --power)
            rest *= 5;
        MultiplyAdd(rest, 0);
    }

    constexpr void ShiftLeft(unsigned bits) {
        const std::size_t words = bits / 32;
        if (words != 0 && length_ != 0) {
            std::copy_backward(words_.begin(), words_.begin() + length_, words_.begin() + length_ + words);
            std::fill_n(words_.begin(), words, 0u);
            length_ += words;
        }
        if (bits % 32 != 0)
            MultiplyAdd(1u << bits % 32, 0);
    }

    // Returns the remainder.
    constexpr std::uint32_t DivideBy(std::uint32_t divisor) {
        std::uint64_t rest = 0;
        for (std::size_t i = length_; i-- != 0;) {
            rest = rest << 32 | words_[i];
            words_[i] = static_cast<std::uint32_t>(rest / divisor);
            rest -= std::uint64_t{words_[i]} * divisor;
        }
        Trim();
        return static_cast<std::uint32_t>(rest);
    }

    // The highest 64 bits, without leading zeros; of a number that has as many.
    constexpr std::uint64_t Top() const {
        const std::uint64_t high = std::uint64_t{words_[length_ - 1]} << 32 | words_[length_ - 2];
        const int zeros = std::countl_zero(high);
        const std::uint64_t low = length_ > 2 ? words_[length_ - 3] : 0;
        return zeros == 0 ? high : high << zeros | low >> (32 - zeros);
    }

    friend constexpr std::strong_ordering operator<=>(const clsBigNumber& one, const clsBigNumber& other) {
        if (one.length_ != other.length_)
            return one.length_ <=> other.length_;
        for (std::size_t i = one.length_; i-- != 0;)
            if (one.words_[i] != other.words_[i])
                return one.words_[i] <=> other.words_[i];
        return std::strong_ordering::equal;
    }
    friend constexpr bool operator==(const clsBigNumber& one, const clsBigNumber& other) {
        return (one <=> other) == 0;
    }

  private:
    constexpr void Trim() {
        while (length_ != 0 && words_[length_ - 1] == 0)
            --length_;
    }

    std::array<std::uint32_t, 96> words_{}; // the lowest first
    std::size_t length_ = 0;                // of those words, the last one is not zero
};

} // namespace tvut
