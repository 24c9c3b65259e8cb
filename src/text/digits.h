// Digits of numbers, up to base 16.
#pragma once

#include <array>
#include <cstdint>

namespace tvut {

namespace detail {

constexpr std::array<std::uint8_t, 0x80> digitValues = [] {
    std::array<std::uint8_t, 0x80> values{};
    values.fill(0xFF);
    for (std::uint8_t value = 0; value < 16; ++value) {
        values[u"0123456789abcdef"[value]] = value;
        values[u"0123456789ABCDEF"[value]] = value;
    }
    return values;
}();

} // namespace detail

// The value of a digit in either case. What is no digit has more than any base.
constexpr unsigned UtilpDigitOf(char16_t unit) {
    return unit < detail::digitValues.size() ? detail::digitValues[unit] : 0xFFu;
}

} // namespace tvut
