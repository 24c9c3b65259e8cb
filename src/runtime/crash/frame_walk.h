// The frames of a stopped thread, innermost first: the chain of frame pointers, and beyond where it breaks a
// search of the stack for what looks like a return address.
#pragma once

#include "runtime/crash/process_memory.h"
#include "runtime/crash/thread_context.h"

namespace tvut {

struct scFrame {
    std::uint32_t address = 0; // the instruction pointer, then return addresses: look up one byte earlier
    bool isGuess = false;      // found by the search; " ?" in a report
};

// What a walk begins with.
struct scWalkStart {
    std::uint32_t eip = 0, esp = 0, ebp = 0;
    std::uint32_t stackEnd = 0; // the address after the stack; 0: where the region of esp ends
};
constexpr scWalkStart UtilpWalkStart(const scThreadContext& context, std::uint32_t stackEnd = 0) noexcept {
    return {context.eip, context.esp, context.ebp, stackEnd};
}

// Returns the number of frames, at least 1 where there is room for any: the instruction pointer is the first,
// wherever it points. Whatever the memory holds, a walk ends.
std::size_t UtilpWalkFrames(IclsProcessMemory& memory, const scWalkStart& start,
                            std::span<scFrame> frames) noexcept;

} // namespace tvut
