// The kinds of handles in a list: what the system knows of them.
#pragma once

#include <cstdint>
#include <string_view>

namespace tvut {

namespace handleKind {
constexpr std::uint8_t gdi = 1, icon = 2, menu = 3, window = 4, kernel = 5;
constexpr std::uint8_t last = kernel;
} // namespace handleKind

// Whether the system knows a handle as one of its kind.
bool UtilpHandleIsAlive(std::uint32_t handle, std::uint8_t kind) noexcept;

// Has the libraries of windows ready where the process has windows, so that what is below asks the loader for
// nothing and may be called under a lock. Without it, and in a process that has none, those are not asked.
void UtilpPrepareHandleNames() noexcept;

// "bitmap", "cursor", "menu": of GDI objects and icons the system is asked.
std::u16string_view UtilpHandleTypeName(std::uint32_t handle, std::uint8_t kind) noexcept;

// How many GDI and user objects the process has; none where the system does not count them.
struct scObjectCounts {
    std::uint32_t gdi = 0, user = 0;
};
scObjectCounts UtilpObjectsOfProcess() noexcept;

} // namespace tvut
