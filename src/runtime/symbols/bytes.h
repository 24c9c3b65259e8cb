// A file's bytes, read where they lie: every offset is checked, and what lies outside is zero or empty.
//
// Inline loops only, for code that runs while the process crashes: no heap, no lock, nothing of the C runtime
// but what compilers emit of their own accord (memcpy, memcmp, strlen).
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tvut {

static_assert(std::endian::native == std::endian::little);

class clsBytes {
  public:
    constexpr clsBytes() noexcept = default;
    constexpr clsBytes(const unsigned char* data, std::size_t size) noexcept : data_(data), size_(size) {}

    constexpr const unsigned char* Data() const noexcept { return data_; }
    constexpr std::size_t Size() const noexcept { return size_; }
    constexpr bool IsEmpty() const noexcept { return size_ == 0; }
    constexpr bool Holds(std::size_t at, std::size_t size) const noexcept {
        return at <= size_ && size <= size_ - at;
    }

    // As many of the bytes from there on as are there.
    constexpr clsBytes From(std::size_t at) const noexcept {
        return at < size_ ? clsBytes(data_ + at, size_ - at) : clsBytes();
    }
    constexpr clsBytes First(std::size_t size) const noexcept { return {data_, size < size_ ? size : size_}; }
    // All of the part, or nothing.
    constexpr clsBytes Part(std::size_t at, std::size_t size) const noexcept {
        return Holds(at, size) ? clsBytes(data_ + at, size) : clsBytes();
    }

    template <class Number>
    Number Get(std::size_t at) const noexcept {
        Number number = 0;
        if (Holds(at, sizeof(Number)))
            std::memcpy(&number, data_ + at, sizeof(Number)); // both are little-endian
        return number;
    }
    std::uint8_t Get8(std::size_t at) const noexcept { return Get<std::uint8_t>(at); }
    std::uint16_t Get16(std::size_t at) const noexcept { return Get<std::uint16_t>(at); }
    std::uint32_t Get32(std::size_t at) const noexcept { return Get<std::uint32_t>(at); }

    // A text up to its zero, which must be there.
    std::string_view Text(std::size_t at) const noexcept {
        for (std::size_t end = at; end < size_; ++end)
            if (data_[end] == 0)
                return {reinterpret_cast<const char*>(data_) + at, end - at};
        return {};
    }
    // A text in a place of fixed size, filled up with zeros.
    std::string_view PaddedText(std::size_t at, std::size_t size) const noexcept {
        const clsBytes place = Part(at, size);
        std::size_t length = 0;
        while (length < place.size_ && place.data_[length] != 0)
            ++length;
        return {reinterpret_cast<const char*>(place.data_), length};
    }

  private:
    const unsigned char* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace tvut
