// Where threads are while the process goes on.
#pragma once

#include "runtime/crash/frame_walk.h"
#include "runtime/result.h"

#include <array>
#include <string>
#include <windows.h>

namespace tvut {

struct scTrace {
    static constexpr std::size_t most = 64;

    std::array<scFrame, most> frames;
    std::size_t count = 0;
    bool isOfCaller = false; // its first frame, too, is where a call returns to

    std::span<const scFrame> Frames() const noexcept { return {frames.data(), count}; }
    void Skip(std::size_t frames) noexcept;
};

// The frames of the calling thread from the one on that has a return address, and above.
void UtilpTraceCaller(const void* returnAddress, scTrace& trace) noexcept;

// From registers on.
void UtilpTraceContext(const CONTEXT& context, scTrace& trace) noexcept;

// Of another thread of this process, which stands still only while they are copied. notFound, noAccess.
UtilResult UtilpTraceThread(DWORD thread, scTrace& trace) noexcept;

// A frame a line, ended by CR LF. Throws std::bad_alloc.
std::u16string UtilpTraceText(const scTrace& trace);

// Writes a trace below a title; at most so many frames. Returns their number.
std::size_t UtilpWriteTrace(std::u16string_view title, const scTrace& trace, std::size_t most) noexcept;

} // namespace tvut
