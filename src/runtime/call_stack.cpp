// Released records are kept in a list, because a DEBUG heap takes or releases one with every
// object. The mark tells a record from what a damaged header points at: it is looked at under a guard, and
// unmade when the record is released, so that releasing it twice does nothing.
#include "runtime/call_stack.h"

#include "platform/guarded.h"
#include "platform/process_heap.h"

#include <windows.h>

namespace tvut {

namespace {

static_assert(sizeof(scCallStack) == 360);

constexpr std::uint32_t usedMark = 0x5AC4CA11;

// A record that nobody uses; the most that a few heaps need at once stay for ever.
struct scFree {
    scFree* next;
};
scFree* freeRecords = nullptr; // guarded by the global lock

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
    stack->count =
        CaptureStackBackTrace(static_cast<DWORD>(skip), static_cast<DWORD>(scCallStack::mostFrames),
                              const_cast<void**>(stack->addresses.data()), nullptr);
    return stack;
}

void UtilpReleaseCallStack(scCallStack* stack) noexcept {
    bool used = false;
    auto look = [&] {
        used = stack->mark == usedMark;
        if (used)
            stack->mark = 0;
    };
    if (!stack || PlatformGuarded(look) != 0 || !used)
        return;
    auto* const record = reinterpret_cast<scFree*>(stack);
    record->next = freeRecords;
    freeRecords = record;
}

void UtilpForgetCallStacks() noexcept {
    while (scFree* const record = freeRecords) {
        freeRecords = record->next;
        PlatformProcessHeapFree(record);
    }
}

} // namespace tvut
