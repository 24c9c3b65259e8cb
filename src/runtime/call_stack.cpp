// Released records are kept in a list, because a DEBUG heap takes or releases one with every
// object. The mark tells a record from what a damaged header points at: it is looked at under a guard, and
// unmade when the record is released, so that releasing it twice does nothing.
#include "runtime/call_stack.h"

#include "platform/guarded.h"
#include "platform/own_frame.h"
#include "platform/process_heap.h"
#include "runtime/frame_chain.h"

#include <algorithm>

namespace tvut {

namespace {

static_assert(sizeof(scCallStack) == 360);
static_assert(clsFrameChain::most == scCallStack::mostFrames + 1); // callers skip one at most

constexpr std::uint32_t usedMark = 0x5AC4CA11;

// A record that nobody uses; the most that a few heaps need at once stay for ever.
struct scFree {
    scFree* next;
};
scFree* freeRecords = nullptr; // guarded by the global lock, as is the next
constinit clsFrameChain chain;

void* TakeRecord() noexcept {
    scFree* const record = freeRecords;
    if (!record)
        return PlatformProcessHeapAlloc(sizeof(scCallStack));
    freeRecords = record->next;
    return record;
}

} // namespace

scCallStack* UtilpCaptureCallStack(std::size_t skip) noexcept {
    auto* const stack = static_cast<scCallStack*>(TakeRecord());
    if (!stack)
        return nullptr;
    stack->mark = usedMark;
    auto frames = chain.Walk(static_cast<const scFrameLink*>(PlatformOwnFrame()), PlatformStackEnd());
    frames = frames.subspan(std::min(skip, frames.size()));
    stack->count = static_cast<std::uint32_t>(std::min(frames.size(), scCallStack::mostFrames));
    std::transform(frames.begin(), frames.begin() + stack->count, stack->addresses.begin(),
                   [](const scFrameLink& frame) { return frame.returnsTo; });
    return stack;
}

scCallStack* UtilpLookAtCallStack(scCallStack* stack) noexcept {
    if (!stack || stack->mark != usedMark)
        return nullptr;
    const_cast<volatile std::uint32_t&>(stack->mark) = usedMark; // fails here and not later
    return stack;
}

void UtilpReleaseSoundCallStack(scCallStack* stack) noexcept {
    if (!stack)
        return;
    stack->mark = 0;
    auto* const record = reinterpret_cast<scFree*>(stack);
    record->next = freeRecords;
    freeRecords = record;
}

void UtilpReleaseCallStack(scCallStack* stack) noexcept {
    scCallStack* sound = nullptr;
    auto look = [&] { sound = UtilpLookAtCallStack(stack); };
    if (stack && PlatformGuarded(look) == 0)
        UtilpReleaseSoundCallStack(sound);
}

void UtilpForgetCallStacks() noexcept {
    while (scFree* const record = freeRecords) {
        freeRecords = record->next;
        PlatformProcessHeapFree(record);
    }
}

} // namespace tvut
