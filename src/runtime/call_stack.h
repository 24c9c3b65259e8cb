// A call stack, kept to tell later who made something.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tvut {

// A block of 360 bytes on the target.
struct scCallStack {
    static constexpr std::size_t mostFrames = 40;

    std::uint32_t count;
    std::uint32_t reserved;
    std::array<const void*, 88> addresses; // count of them are set
};

// The frames of the caller and above, at most 40; `skip` more of them are left out. The record is
// from the process heap; null when there is no memory for it.
scCallStack* UtilpCaptureCallStack(std::size_t skip) noexcept;

} // namespace tvut
