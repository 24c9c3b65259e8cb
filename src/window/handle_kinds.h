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

// "bitmap", "cursor", "menu": of GDI objects and icons the system is asked.
std::u16string_view UtilpHandleTypeName(std::uint32_t handle, std::uint8_t kind) noexcept;

} // namespace tvut
