// What there is to say of handles, as groups of diagnostic lines with call stacks. Under the global lock.
#pragma once

#include "window/handle_list.h"

namespace tvut {

constexpr std::size_t mostReportedStacks = 100;

// Handles that are in the list, and since which mark, 0: none was asked for. Nothing when there are none.
void UtilpReportHandlesLeft(const scHandlesLeft& left, std::uint32_t mark, std::uint32_t now) noexcept;

// Handles that the system does not know any more, equal stacks beside each other.
void UtilpReportDeadHandles(std::span<const scKeptHandle> dead, std::uint32_t now) noexcept;

// A handle that came again while it was in the list.
void UtilpReportReplacedHandle(const scKeptHandle& old, std::uint32_t now) noexcept;

// A handle that cannot be taken out: what of it, and who tried.
void UtilpReportRefusedRemoval(std::uint32_t handle, std::u16string_view what,
                               const clsHandleStack& stack) noexcept;

void UtilpReportFullList() noexcept;

} // namespace tvut
