// Which memory goes into a dump that holds not all of it: stacks, code around instruction pointers, and what
// the crashed thread's registers and the top of its stack point at.
#pragma once

#include "runtime/crash/process_memory.h"
#include "runtime/crash/thread_context.h"

#include <span>

namespace tvut {

// Ranges in a fixed room, sorted and without overlaps once they are settled.
class clsMemoryRanges {
  public:
    explicit clsMemoryRanges(std::span<scMemoryRange> room) noexcept : room_(room) {}

    // Adds a range; one without bytes, and one without room, is left out.
    void Add(scMemoryRange range) noexcept;

    // Sorts them, and makes those one that overlap or touch.
    void Settle() noexcept;

    std::span<const scMemoryRange> Ranges() const noexcept { return room_.first(count_); }

  private:
    std::span<scMemoryRange> room_;
    std::size_t count_ = 0;
};

// A stack from its pointer up, as far as it can be read, and at most some bytes of it. stackEnd may be 0:
// where the region of the pointer ends.
scMemoryRange UtilpStackRange(IclsProcessMemory& memory, std::uint32_t pointer, std::uint32_t stackEnd,
                              std::uint32_t mostBytes) noexcept;

constexpr std::uint32_t mostOfStack = 256 * 1024;         // bytes
constexpr std::uint32_t mostOfCrashedStack = 1024 * 1024; // bytes

// 512 bytes around an instruction pointer, as much of them as is there.
void UtilpAddCode(clsMemoryRanges& ranges, IclsProcessMemory& memory, std::uint32_t eip) noexcept;

// 1 KB around each writable address that the registers and the topmost 4 KB of the stack name, at most 512 of
// them.
void UtilpAddNamedMemory(clsMemoryRanges& ranges, IclsProcessMemory& memory, const scThreadContext& context,
                         scMemoryRange stack) noexcept;

} // namespace tvut
