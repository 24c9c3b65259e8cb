// What tells the files that a process has left that is gone: hexadecimal numbers in their names, and their
// age.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string_view>
#include <windows.h>

namespace tvut {

// Whether a text is a hexadecimal number of at most a given number of digits.
inline bool PlatformIsHexadecimal(std::wstring_view text, std::size_t most) noexcept {
    return !text.empty() && text.size() <= most && std::ranges::all_of(text, [](wchar_t c) {
        return (c >= L'0' && c <= L'9') || (c >= L'a' && c <= L'f') || (c >= L'A' && c <= L'F');
    });
}

// Whether something was last written to more than an hour ago.
inline bool PlatformIsOld(const FILETIME& written) noexcept {
    constexpr std::uint64_t hour = 60 * 60 * 10000000ull; // in units of 100 ns
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return std::bit_cast<std::uint64_t>(written) + hour < std::bit_cast<std::uint64_t>(now);
}

} // namespace tvut
