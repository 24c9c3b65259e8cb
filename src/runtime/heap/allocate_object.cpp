// One guard covers the look at the handle and the system's allocation: that is the whole way of a call that
// nothing is wrong with. Marks, fence and fill are written after it, because the block is ours by then.
#include "runtime/heap/allocate_object.h"

#include "runtime/diagnostic_group.h"
#include "runtime/heap/object_report.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::uint32_t mostReportedFrames = 10; // of a call that asks for a negative size

bool IsDebugAllocation(const clsHeapNode& heap, std::uint32_t flags) noexcept {
    return (flags & heapFlag::neverDebug) == 0 && (heap.IsDebug() || (flags & heapFlag::debug) != 0);
}

DWORD OptionsOf(const clsHeapNode& heap, bool debug, std::uint32_t flags) noexcept {
    const DWORD options = heap.system.Options();
    if (debug)
        return (flags & heapFlag::zero) | (options & HEAP_GENERATE_EXCEPTIONS);
    return options | ((flags & heapFlag::zero) != 0 ? HEAP_ZERO_MEMORY : 0);
}

struct scCall : clsSystemHeap::scAllocateCall {
    scCall(clsHeapNode* handle, const scAllocation& asked) noexcept : heap(handle), wanted(asked) {}

    clsSystemHeap* Look() noexcept;

    clsHeapNode* heap;
    const scAllocation& wanted;
    bool isHeap = false; // found by Look, as is the next
    bool debug = false;
};

// Sizes that cannot be added to are refused: they must not wrap into small blocks.
clsSystemHeap* scCall::Look() noexcept {
    isHeap = heap->self == heap;
    if (!isHeap || heap->system.IsBroken())
        return nullptr;
    debug = IsDebugAllocation(*heap, wanted.flags);
    const auto payloadBytes = static_cast<std::uint32_t>(wanted.size);
    const std::size_t overhead = debug ? debugOverhead : plainOverhead;
    if (payloadBytes > UINT32_MAX - overhead)
        return nullptr;
    options = OptionsOf(*heap, debug, wanted.flags);
    bytes = payloadBytes + overhead;
    return &heap->system;
}

void* MakePlain(void* block) noexcept {
    auto* const mark = static_cast<std::uint32_t*>(block);
    *mark = plainMark;
    return mark + 1;
}

void* MakeDebug(clsHeapNode& heap, const scAllocation& wanted, void* block) noexcept {
    auto* const header = static_cast<scDebugHeader*>(block);
    scCallStack* const stack = (wanted.flags & heapFlag::noStack) == 0 ? UtilpCaptureCallStack(1) : nullptr;
    *header = {debugMagic, heap.system.Handle(), GetTickCount(), stack, wanted.tag, wanted.size, debugMark};
    PutFence(header);
    heap.payloadBytes += wanted.size;
    ++heap.debugObjects;
    return PayloadOf(header);
}

// Plain objects come zeroed from the system.
void Fill(void* payload, const scAllocation& wanted, bool debug) noexcept {
    const auto bytes = static_cast<std::size_t>(wanted.size);
    if ((wanted.flags & heapFlag::zero) != 0) {
        if (debug)
            std::memset(payload, 0, bytes);
    } else if ((wanted.flags & heapFlag::fill) != 0) {
        std::memset(payload, freshFill, bytes);
    }
}

clsDiagnosticLine CallLine(const clsHeapNode& heap, bool debug, std::int32_t size) noexcept {
    return UtilpHeapLine(u"Error: ", heap)
        .Put(u"AllocObject")
        .Put(debug ? u"D" : u"ND")
        .Put(u"(")
        .Put(size)
        .Put(u")");
}

void ReportNegativeSize(const clsHeapNode& heap, std::int32_t size) noexcept {
    if (!UtilpDiagnosticsOn())
        return;
    const clsDiagnosticGroup report(true, CallLine(heap, true, size));
    if (scCallStack* const stack = UtilpCaptureCallStack(0)) {
        stack->count = std::min(stack->count, mostReportedFrames);
        UtilpReportCallStack(u"Memory object allocation", stack);
        UtilpReleaseCallStack(stack);
    }
}

void ReportFailure(const clsHeapNode& heap, bool debug, std::int32_t size) noexcept {
    if (UtilpDiagnosticsOn())
        UtilpReport(CallLine(heap, debug, size).Put(u": Out of memory"));
}

} // namespace

void* UtilpAllocateObject(clsHeapNode* heap, const scAllocation& wanted, unsigned long& exception) noexcept {
    scCall call(heap, wanted);
    void* const block = clsSystemHeap::Allocate(call, exception);
    if (!call.isHeap)
        return nullptr;
    ++heap->allocations;
    heap->mostObjects = std::max(heap->mostObjects, ++heap->objects);
    if (call.debug && wanted.size < 0)
        ReportNegativeSize(*heap, wanted.size);
    if (!block) {
        ReportFailure(*heap, call.debug, wanted.size);
        exception = heap->system.RaisesExceptions() ? STATUS_NO_MEMORY : 0;
        return nullptr;
    }
    void* const payload = call.debug ? MakeDebug(*heap, wanted, block) : MakePlain(block);
    Fill(payload, wanted, call.debug);
    return payload;
}

} // namespace tvut
