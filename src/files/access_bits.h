// Rights as callers ask for them, in the bits of the system's lists.
#pragma once

#include <cstdint>

namespace tvut {

namespace access {

constexpr std::uint32_t read = 0x1;
constexpr std::uint32_t write = 0x2;
constexpr std::uint32_t execute = 0x4;
constexpr std::uint32_t remove = 0x8;
constexpr std::uint32_t changeRights = 0x10;
constexpr std::uint32_t all = 0x1F;

// In a folder (MS-DTYP, 2.4.3, and the file system's own bits).
constexpr std::uint32_t addFile = 0x2;
constexpr std::uint32_t addFolder = 0x4;
constexpr std::uint32_t removeChild = 0x40;
constexpr std::uint32_t removeThis = 0x00010000;

} // namespace access

constexpr std::uint32_t UtilpAccessMask(std::uint32_t rights) noexcept {
    constexpr std::uint32_t masks[] = {0x00120089, 0x00120116, 0x001200A0, access::removeThis, 0x000C0000};
    std::uint32_t mask = 0;
    for (std::uint32_t at = 0; at < 5; ++at)
        if (rights >> at & 1)
            mask |= masks[at];
    return mask;
}

} // namespace tvut
