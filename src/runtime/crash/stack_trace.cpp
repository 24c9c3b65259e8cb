// The calling thread asks the system for its frames. A stack that stands still, and one that begins at given
// registers, are walked by frame_walk, as in reports. Another thread is stopped for the walk alone: what
// names frames takes locks and memory, of which it may hold either.
#include "runtime/crash/stack_trace.h"

#include "platform/owned.h"
#include "runtime/crash/live_process.h"
#include "runtime/diagnostic_group.h"
#include "runtime/locked_call.h"
#include "runtime/stack_names.h"
#include "runtime/system_result.h"

#include <algorithm>

namespace tvut {

namespace {

FrameAddress MeaningOf(const scTrace& trace, std::size_t i) noexcept {
    return i == 0 && !trace.isOfCaller ? FrameAddress::exact : FrameAddress::afterCall;
}

// Calls back with each frame in words. The service is made ready before the lock is taken.
template <class Use>
void EachLine(const scTrace& trace, std::size_t most, Use use) {
    clsStackNames names;
    for (std::size_t i = 0; i < std::min(trace.count, most); ++i) {
        const scFrame& frame = trace.frames[i];
        const auto* const address = reinterpret_cast<const void*>(static_cast<std::uintptr_t>(frame.address));
        clsDiagnosticLine line;
        line.Put(names.Name(address, MeaningOf(trace, i)).text).Put(frame.isGuess ? u" ?" : u"");
        use(line);
    }
}

} // namespace

void scTrace::Skip(std::size_t skipped) noexcept {
    skipped = std::min(skipped, count);
    std::copy(frames.begin() + static_cast<std::ptrdiff_t>(skipped),
              frames.begin() + static_cast<std::ptrdiff_t>(count), frames.begin());
    count -= skipped;
    isOfCaller = isOfCaller || skipped > 0;
}

// Systems differ in whether the function that asks is a frame of its own answer, so what counts is the
// address.
void UtilpTraceCaller(const void* returnAddress, scTrace& trace) noexcept {
    constexpr std::size_t ours = 4; // at most
    void* addresses[scTrace::most + ours];
    const std::size_t count =
        CaptureStackBackTrace(0, static_cast<DWORD>(std::size(addresses)), addresses, nullptr);
    void** first = std::find(addresses, addresses + std::min(count, ours), returnAddress);
    if (first == addresses + std::min(count, ours))
        first = addresses;
    void** const last = addresses + count;
    trace.isOfCaller = true;
    trace.count = 0;
    for (; first != last && *first && trace.count < scTrace::most; ++first)
        trace.frames[trace.count++] = {static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(*first)),
                                       false};
}

void UtilpTraceContext(const CONTEXT& context, scTrace& trace) noexcept {
    clsLiveMemory memory(UtilpOwnProcess());
    trace.count = UtilpWalkFrames(memory, UtilpWalkStart(UtilpContextOf(context)), trace.frames);
}

UtilResult UtilpTraceThread(DWORD thread, scTrace& trace) noexcept {
    const clsHandle look(OpenThread(THREAD_QUERY_INFORMATION, FALSE, thread));
    if (!look)
        return GetLastError() == ERROR_ACCESS_DENIED ? UtilResult::noAccess : UtilResult::notFound;
    DWORD exitCode = 0;
    if (GetProcessIdOfThread(look.Get()) != GetCurrentProcessId() ||
        !GetExitCodeThread(look.Get(), &exitCode) || exitCode != STILL_ACTIVE)
        return UtilResult::notFound;
    clsBareThread stopped;
    CONTEXT context{};
    if (stopped.Open(GetCurrentProcessId(), thread) < 0 || !stopped.Suspend() || !stopped.Context(context))
        return UtilResult::noAccess;
    UtilpTraceContext(context, trace);
    return UtilResult::ok;
}

std::u16string UtilpTraceText(const scTrace& trace) {
    std::u16string text;
    UtilpPrepareStackNamesAsked();
    const clsGlobalLockGuard lock;
    EachLine(trace, scTrace::most,
             [&](const clsDiagnosticLine& line) { text.append(line.View()).append(u"\r\n"); });
    return text;
}

std::size_t UtilpWriteTrace(std::u16string_view title, const scTrace& trace, std::size_t most) noexcept {
    UtilpPrepareStackNamesAsked();
    const clsGlobalLockGuard lock;
    const clsDiagnosticGroup group(true, clsDiagnosticLine().Put(title));
    EachLine(trace, most, [&](const clsDiagnosticLine& line) {
        group.Line(clsDiagnosticLine().Put(u"  ").Put(line.View()));
    });
    return std::min(trace.count, most);
}

} // namespace tvut
