// Codes of ASCII letters and numbers of ASCII digits, as callers write them.
#pragma once

#include "text/digits.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tvut {

// Whether a text is this code. Letters count as the same in either case.
template <class Code>
constexpr bool UtilpIsCode(std::u16string_view text, const Code& code) noexcept {
    constexpr auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? c + 0x20 : c + 0; };
    return std::ranges::equal(
        text, code, [&](char16_t a, char b) { return lower(a) == lower(static_cast<unsigned char>(b)); });
}

// The number that a text of one to five decimal digits is.
constexpr std::optional<std::uint32_t> UtilpCodeNumber(std::u16string_view text) noexcept {
    constexpr std::size_t mostDigits = 5;
    if (text.empty() || text.size() > mostDigits)
        return std::nullopt;
    std::uint32_t number = 0;
    for (const char16_t c : text) {
        if (UtilpDigitOf(c) > 9)
            return std::nullopt;
        number = number * 10 + UtilpDigitOf(c);
    }
    return number;
}

} // namespace tvut
