// The process's one list of handles, for any thread.
//
// Its lock is the last in the order: nothing is asked, written or called while it is held. At the end of the
// process it may be one that a killed thread held; then nothing is done.
#pragma once

#include "runtime/result.h"

#include <cstdint>
#include <string_view>

namespace tvut {

// Note a handle, take one out; `returnsTo` is where the caller's frames begin. Add throws std::bad_alloc.
UtilResult UtilpAddHandle(std::uint32_t handle, std::uint8_t kind, std::u16string_view label,
                          const void* returnsTo);
UtilResult UtilpRemoveHandle(std::uint32_t handle, std::uint8_t kind, const void* returnsTo) noexcept;

std::uint32_t UtilpCountHandles(std::uint8_t kind) noexcept;

// How many handles of a kind the system does not know any more. Throws std::bad_alloc.
std::uint32_t UtilpCheckHandles(std::uint8_t kind);

std::uint32_t UtilpMarkHandles() noexcept;
bool UtilpIsHandleMark(std::uint32_t mark) noexcept; // 0 counts as one

// How many handles of a kind were added after a mark. Throws std::bad_alloc.
std::uint32_t UtilpReportHandles(std::uint8_t kind, std::uint32_t mark);

// Reports what is left and has not been reported by this before.
void UtilpReportHandlesAtEnd() noexcept;

} // namespace tvut
