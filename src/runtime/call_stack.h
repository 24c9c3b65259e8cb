// A call stack, kept to report later who made something.
//
// Records are taken and released under the global lock; those that are free are kept for the next.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tvut {

// A block of 360 bytes on the target.
struct scCallStack {
    static constexpr std::size_t mostFrames = 40;

    std::uint32_t count;
    std::uint32_t mark;                    // tells a record from what a damaged pointer leads to
    std::array<const void*, 88> addresses; // count of them are set
};

// The frames of the caller and above, at most 40; `skip` more of them are left out. Null when there is no
// memory for the record.
scCallStack* UtilpCaptureCallStack(std::size_t skip) noexcept;

// Null, and anything that is no record, is passed over: the pointer may come from damaged memory.
void UtilpReleaseCallStack(scCallStack* stack) noexcept;

// The same in two steps, for callers who have a guard. The look fails where the pointer leads nowhere or
// cannot be written to; its result is null for what is no record, and released after the guard.
scCallStack* UtilpLookAtCallStack(scCallStack* stack) noexcept;
void UtilpReleaseSoundCallStack(scCallStack* stack) noexcept;

// Returns the free records to the system; for when the library is unloaded.
void UtilpForgetCallStacks() noexcept;

} // namespace tvut
