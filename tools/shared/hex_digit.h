// Hexadecimal digits in either case.
#pragma once

namespace tool {

// 16 for what is no digit.
template <typename Unit>
constexpr unsigned HexDigit(Unit unit) {
    const auto value = static_cast<unsigned>(unit);
    if (value >= '0' && value <= '9')
        return value - '0';
    const unsigned lower = value | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

} // namespace tool
