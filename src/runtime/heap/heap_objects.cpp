#include "runtime/heap/heap_objects.h"

#include "platform/guarded.h"
#include "runtime/diagnostic_group.h"
#include "runtime/heap/object_check.h"
#include "runtime/heap/object_report.h"
#include "runtime/heap/system_heap.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>

namespace tvut {

namespace {

constexpr std::uint32_t mostReportedFrames = 10; // of a call that asks for a negative size

// "Error: clsHeapNode['module'/'heap']::FreeObject(0X0012ABCD)"
clsDiagnosticLine CallLine(std::u16string_view beginning, const clsHeapNode& heap, std::u16string_view call,
                           const void* payload) noexcept {
    clsDiagnosticLine line;
    UtilpPutHeapName(line, beginning, heap);
    return line.Put(call).Put(u"(").PutPointer(payload).Put(u")");
}

clsDiagnosticLine BadPointerLine(std::uint32_t mark, std::u16string_view end) noexcept {
    return clsDiagnosticLine()
        .Put(u"bad pointer, or memory underrun (magic=0x")
        .PutHex(mark, 8)
        .Put(u")")
        .Put(end);
}

// ---- Allocation ------------------------------------------------------------------------------------

bool IsDebugAllocation(const clsHeapNode& heap, std::uint32_t flags) noexcept {
    return (flags & HeapFlag::neverDebug) == 0 && (heap.IsDebug() || (flags & HeapFlag::debug) != 0);
}

clsDiagnosticLine AllocationLine(const clsHeapNode& heap, bool debug, std::int32_t size) noexcept {
    clsDiagnosticLine line;
    UtilpPutHeapName(line, u"Error: ", heap);
    return line.Put(u"AllocObject").Put(debug ? u"D" : u"ND").Put(u"(").Put(size).Put(u")");
}

void ReportNegativeSize(const clsHeapNode& heap, std::int32_t size) noexcept {
    if (!UtilpDiagnosticsOn())
        return;
    clsDiagnosticLine head;
    UtilpPutHeapName(head, u"Error: ", heap);
    const clsDiagnosticGroup report(true, head.Put(u"AllocObjectD(").Put(size).Put(u")"));
    if (scCallStack* const stack = UtilpCaptureCallStack(1)) {
        stack->count = std::min(stack->count, mostReportedFrames);
        UtilpReportCallStack(u"Memory object allocation", stack);
        UtilpReleaseCallStack(stack);
    }
}

DWORD OptionsOf(const clsHeapNode& heap, bool debug, std::uint32_t flags) noexcept {
    if (debug)
        return (flags & HeapFlag::zero) | (heap.options & HEAP_GENERATE_EXCEPTIONS);
    return heap.options | ((flags & HeapFlag::zero) != 0 ? HEAP_ZERO_MEMORY : 0);
}

struct scBlock {
    bool isHeap = false;
    bool debug = false;
    void* block = nullptr;
};

// One guard for the handle and for the system's heap: this is the whole way of an allocation that nothing is
// wrong with. Sizes that cannot be added to are refused: they must not wrap into small blocks.
unsigned long SystemAlloc(const clsHeapNode* heap, const scAllocation& wanted, scBlock& result) noexcept {
    auto allocate = [&] {
        result.isHeap = heap->self == heap;
        if (!result.isHeap || heap->broken)
            return;
        result.debug = IsDebugAllocation(*heap, wanted.flags);
        const auto payloadBytes = static_cast<std::uint32_t>(wanted.size);
        const std::size_t overhead = result.debug ? debugOverhead : plainOverhead;
        if (payloadBytes <= UINT32_MAX - overhead)
            result.block =
                HeapAlloc(heap->heap, OptionsOf(*heap, result.debug, wanted.flags), payloadBytes + overhead);
    };
    return PlatformGuarded(allocate);
}

void* MakePlain(void* block) noexcept {
    auto* const mark = static_cast<std::uint32_t*>(block);
    *mark = plainMark;
    return mark + 1;
}

void* MakeDebug(clsHeapNode& heap, const scAllocation& wanted, void* block) noexcept {
    auto* const header = static_cast<scDebugHeader*>(block);
    scCallStack* const stack = (wanted.flags & HeapFlag::noStack) == 0 ? UtilpCaptureCallStack(2) : nullptr;
    *header = {debugMagic, heap.heap, GetTickCount(), stack, wanted.tag, wanted.size, debugMark};
    std::memcpy(FenceOf(header), &fenceMark, sizeof fenceMark);
    heap.payloadBytes += wanted.size;
    ++heap.debugObjects;
    return PayloadOf(header);
}

void ReportFailedAllocation(const clsHeapNode& heap, bool debug, std::int32_t size) noexcept {
    if (!UtilpDiagnosticsOn())
        return;
    UtilpReport(AllocationLine(heap, debug, size).Put(u": Out of memory"));
}

// Plain objects come zeroed from the system.
void Fill(void* payload, const scAllocation& wanted, bool debug) noexcept {
    const auto bytes = static_cast<std::size_t>(wanted.size);
    if ((wanted.flags & HeapFlag::zero) != 0) {
        if (debug)
            std::memset(payload, 0, bytes);
    } else if ((wanted.flags & HeapFlag::fill) != 0) {
        std::memset(payload, freshFill, bytes);
    }
}

// ---- Entering the system's heap --------------------------------------------------------------------

// The system reads its own words before a block. Where a page begins with what looks like an object, the
// pointer is wrong, and not the heap.
void LookBefore(const void* block) noexcept {
    constexpr std::ptrdiff_t systemBytes = 8;
    static_cast<void>(static_cast<const volatile char*>(block)[-systemBytes]);
}

// Within a guard: what fails from here on, fails within the system.
void Enter(bool& entered) noexcept {
    std::atomic_signal_fence(std::memory_order_seq_cst); // whatever may fail before has been done
    entered = true;
}

// Calls the body, which is to call Enter. A heap that fails after that is not entered again.
template <class Body>
bool InSystem(clsHeapNode& heap, const bool& entered, Body& body) noexcept {
    if (heap.broken)
        return false;
    const bool failed = PlatformGuarded(body) != 0;
    heap.broken = failed && entered;
    return !failed;
}

// ---- Freeing ---------------------------------------------------------------------------------------

// Gives a block back to the system; its mark is unmade first, so that freeing it twice is noticed, and
// restored when the system refuses.
bool SystemFree(clsHeapNode& heap, void* block, std::uint32_t& mark) noexcept {
    BOOL freed = FALSE;
    bool entered = false;
    auto free = [&] {
        LookBefore(block);
        const std::uint32_t before = std::exchange(mark, freedMark);
        Enter(entered);
        freed = HeapFree(heap.heap, heap.options & HEAP_NO_SERIALIZE, block);
        if (!freed)
            mark = before;
    };
    return InSystem(heap, entered, free) && freed;
}

// 0 where there is no telling.
SIZE_T SystemSize(clsHeapNode& heap, const void* block) noexcept {
    SIZE_T size = 0;
    bool entered = false;
    auto ask = [&] {
        LookBefore(block);
        Enter(entered);
        size = HeapSize(heap.heap, heap.options & HEAP_NO_SERIALIZE, block);
    };
    return InSystem(heap, entered, ask) ? size : 0;
}

void ReleaseRecord(scDebugHeader* header) noexcept {
    scCallStack* stack = nullptr;
    auto take = [&] { stack = std::exchange(header->stack, nullptr); };
    if (PlatformGuarded(take) == 0)
        UtilpReleaseCallStack(stack);
}

// The size may be damaged, too: what is filled may end before it.
void FillFreed(void* payload, std::size_t bytes) noexcept {
    auto fill = [&] { std::memset(payload, freedFill, bytes); };
    PlatformGuarded(fill);
}

HeapResult RefuseDebug(const clsHeapNode& heap, scDebugHeader* header, std::u16string_view why,
                       bool dumped) noexcept {
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                    CallLine(u"Error: ", heap, u"FreeObjectD", PayloadOf(header)));
    report.Line(clsDiagnosticLine().Put(why));
    if (dumped)
        UtilpDumpObject(header);
    return HeapResult::badObject;
}

void ReportBadSize(const clsHeapNode& heap, scDebugHeader* header) noexcept {
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                    CallLine(u"Error: ", heap, u"FreeObjectD", PayloadOf(header)));
    report.Line(clsDiagnosticLine().Put(u"bad size ").Put(header->size));
    UtilpDumpObject(header);
}

// An object that is whole, as far as its words can tell.
HeapResult FreeWholeDebug(clsHeapNode& heap, scDebugHeader* header) noexcept {
    if (header->heap != heap.heap)
        return RefuseDebug(heap, header, u"error freeing object", true);
    const std::int32_t size = header->size;
    const bool on = UtilpDiagnosticsOn();
    if (size < 0 ||
        (on && !heap.broken && SystemSize(heap, header) != static_cast<std::size_t>(size) + debugOverhead))
        ReportBadSize(heap, header);
    else if (on)
        FillFreed(PayloadOf(header), static_cast<std::size_t>(size));
    ReleaseRecord(header);
    if (!SystemFree(heap, header, header->mark))
        return RefuseDebug(heap, header, u"error freeing object", true);
    --heap.objects;
    --heap.blocks;
    --heap.debugObjects;
    heap.payloadBytes -= size;
    return HeapResult::success;
}

HeapResult FreeDebug(clsHeapNode& heap, scDebugHeader* header) noexcept {
    switch (UtilpExamineObject(header)) {
    case Damage::magic:
        return RefuseDebug(heap, header, u"Not allocated with UTIL or memory underrun (object not freed)",
                           false);
    case Damage::fence:
        UtilpReportOverrun(header);
        ReleaseRecord(header);
        return RefuseDebug(heap, header, u"Memory overrun, fence value has been changed (object not freed)",
                           true);
    default:
        return FreeWholeDebug(heap, header);
    }
}

void FillFreedPlain(const clsHeapNode& heap, std::uint32_t* block, SIZE_T size) noexcept {
    const auto signedSize = static_cast<std::int32_t>(size);
    if (signedSize >= static_cast<std::int32_t>(plainOverhead)) {
        FillFreed(block + 1, size - plainOverhead);
        return;
    }
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                    CallLine(u"Error: ", heap, u"FreeObjectND", block + 1));
    report.Line(clsDiagnosticLine().Put(u"bad object size ").Put(signedSize));
}

HeapResult FreePlain(clsHeapNode& heap, std::uint32_t* block) noexcept {
    if (UtilpDiagnosticsOn())
        FillFreedPlain(heap, block, SystemSize(heap, block));
    if (SystemFree(heap, block, *block)) {
        --heap.objects;
        --heap.blocks;
        return HeapResult::success;
    }
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                    CallLine(u"Error: ", heap, u"FreeObjectND", block + 1));
    report.Line(clsDiagnosticLine().Put(u"error freeing object"));
    return HeapResult::badObject;
}

// The word before a payload; 0 where nothing can be read.
std::uint32_t ReadMark(void* payload) noexcept {
    std::uint32_t mark = 0;
    auto read = [&] { mark = MarkOf(payload); };
    PlatformGuarded(read);
    return mark;
}

// What is freed at once when nobody listens, and nothing is wrong with the object.
struct scQuickFree {
    bool isHeap = false;
    bool entered = false; // the system's heap
    BOOL freed = FALSE;
    std::uint32_t mark = 0; // 0 where nothing can be read
    scCallStack* stack = nullptr;
    std::int32_t size = 0; // of a DEBUG object
};

bool IsWhole(const clsHeapNode& heap, scDebugHeader* header) noexcept {
    if (header->magic != debugMagic || header->heap != heap.heap || header->size < 0)
        return false;
    std::uint32_t fence;
    std::memcpy(&fence, FenceOf(header), sizeof fence);
    return fence == fenceMark;
}

void QuickFree(clsHeapNode* heap, void* payload, bool silent, scQuickFree& quick) noexcept {
    auto free = [&] {
        quick.isHeap = heap->self == heap;
        if (!quick.isHeap)
            return;
        std::uint32_t& mark = MarkOf(payload);
        quick.mark = mark;
        void* block = &mark;
        if (!silent || heap->broken || (mark != plainMark && mark != debugMark))
            return;
        if (mark == debugMark) {
            scDebugHeader* const header = HeaderOf(payload);
            if (!IsWhole(*heap, header))
                return;
            quick.stack = header->stack;
            quick.size = header->size;
            block = header;
        }
        LookBefore(block);
        mark = freedMark; // so that freeing it twice is noticed
        Enter(quick.entered);
        quick.freed = HeapFree(heap->heap, heap->options & HEAP_NO_SERIALIZE, block);
        if (!quick.freed)
            mark = quick.mark;
    };
    if (PlatformGuarded(free) != 0 && quick.entered)
        heap->broken = true;
}

void CountFree(clsHeapNode& heap, const scQuickFree& freed) noexcept {
    --heap.objects;
    --heap.blocks;
    if (freed.mark != debugMark)
        return;
    UtilpReleaseCallStack(freed.stack);
    --heap.debugObjects;
    heap.payloadBytes -= freed.size;
}

// ---- Heaps -----------------------------------------------------------------------------------------

HeapResult NotSupported(std::u16string_view call) noexcept {
    UtilpReport(clsDiagnosticLine().Put(u"Error: ").Put(call).Put(u"(...) does only run under NT"));
    return HeapResult::notSupported;
}

HeapResult ReportCorrupted(clsHeapNode& heap) noexcept {
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(), clsDiagnosticLine().Put(u" Error: Heap corrupted"));
    if (UtilpDiagnosticsOn())
        UtilpReportObjects(heap);
    return HeapResult::corrupted;
}

bool SystemValidates(clsHeapNode& heap, const void* block) noexcept {
    BOOL valid = FALSE;
    bool entered = false;
    auto validate = [&] {
        if (block)
            LookBefore(block);
        Enter(entered);
        valid = UtilpHeapServices().validate(heap.heap, heap.options & HEAP_NO_SERIALIZE, block);
    };
    return InSystem(heap, entered, validate) && valid;
}

} // namespace

void* UtilpAllocateObject(clsHeapNode* heap, const scAllocation& wanted, unsigned long& exception) noexcept {
    scBlock got;
    exception = SystemAlloc(heap, wanted, got);
    if (!got.isHeap)
        return nullptr;
    if (exception != 0 && exception != STATUS_NO_MEMORY)
        heap->broken = true;
    ++heap->allocations;
    heap->mostObjects = std::max(heap->mostObjects, ++heap->objects);
    if (got.debug && wanted.size < 0)
        ReportNegativeSize(*heap, wanted.size);
    if (!got.block || exception != 0) {
        ReportFailedAllocation(*heap, got.debug, wanted.size);
        exception = (heap->options & HEAP_GENERATE_EXCEPTIONS) != 0 ? STATUS_NO_MEMORY : 0;
        return nullptr;
    }
    ++heap->blocks;
    void* const payload = got.debug ? MakeDebug(*heap, wanted, got.block) : MakePlain(got.block);
    Fill(payload, wanted, got.debug);
    return payload;
}

HeapResult UtilpFreeObject(clsHeapNode* heap, void* payload, bool silent) noexcept {
    scQuickFree quick;
    QuickFree(heap, payload, silent, quick);
    if (!quick.isHeap)
        return HeapResult::badObject;
    if (quick.freed) {
        CountFree(*heap, quick);
        return HeapResult::success;
    }
    if (quick.mark == plainMark)
        return FreePlain(*heap, &MarkOf(payload));
    if (quick.mark == debugMark)
        return FreeDebug(*heap, HeaderOf(payload));
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                    CallLine(u"Error: ", *heap, u"FreeObject", payload));
    report.Line(BadPointerLine(quick.mark, u""));
    return HeapResult::badObject;
}

std::int32_t UtilpObjectSize(clsHeapNode& heap, void* payload) noexcept {
    const std::uint32_t mark = ReadMark(payload);
    if (mark != plainMark && mark != debugMark) {
        const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                        CallLine(u"Error: ", heap, u"SizeObject", payload));
        report.Line(BadPointerLine(mark, u"\n"));
        return static_cast<std::int32_t>(HeapResult::badObject);
    }
    const bool debug = mark == debugMark;
    const void* const block = debug ? static_cast<void*>(HeaderOf(payload)) : &MarkOf(payload);
    const std::size_t overhead = debug ? debugOverhead : plainOverhead;
    const SIZE_T size = SystemSize(heap, block);
    if (size >= overhead && size <= INT32_MAX)
        return static_cast<std::int32_t>(size - overhead);
    if (heap.IsDebug()) {
        const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                        CallLine(u"Warning: ", heap, u"SizeObject", payload).Put(u":"));
        report.Line(clsDiagnosticLine().Put(u"Object has a size of 0 (bad pointer?)\n"));
    }
    return 0;
}

HeapResult UtilpValidateHeap(clsHeapNode& heap, void* payload) noexcept {
    if (!UtilpHeapServices().validate || !UtilpHeapServices().CanWalk())
        return NotSupported(u"UtilHeapValidate");
    const void* block = nullptr;
    if (payload) {
        const std::uint32_t mark = ReadMark(payload);
        if (mark != plainMark && mark != debugMark) {
            const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                            CallLine(u"Error: ", heap, u"ValidateHeap", payload));
            report.Line(BadPointerLine(mark, u""));
            return HeapResult::badObject;
        }
        block = mark == debugMark ? static_cast<void*>(HeaderOf(payload)) : &MarkOf(payload);
    }
    if (!SystemValidates(heap, block))
        return ReportCorrupted(heap);
    const HeapResult result = heap.IsDebug() ? UtilpCheckObjects(heap) : HeapResult::success;
    return result == HeapResult::corrupted ? ReportCorrupted(heap) : result;
}

HeapResult UtilpShrinkHeap(clsHeapNode& heap) noexcept {
    if (!UtilpHeapServices().compact)
        return NotSupported(u"UtilHeapShrink");
    SIZE_T largest = 0;
    auto compact = [&] {
        largest = UtilpHeapServices().compact(heap.heap, heap.options & HEAP_NO_SERIALIZE);
    };
    if (!heap.broken && PlatformGuarded(compact) != 0)
        heap.broken = true;
    if (largest != 0 && !heap.broken)
        return HeapResult::success;
    UtilpReport(CallLine(u"Error: ", heap, u"ShrinkHeap", &heap).Put(u" failed"));
    return HeapResult::failed;
}

std::int32_t UtilpHeapSize(clsHeapNode& heap, bool objectsOnly) noexcept {
    if (!objectsOnly && !heap.IsDebug()) {
        const clsDiagnosticGroup report(
            UtilpDiagnosticsOn(),
            clsDiagnosticLine().Put(u"UtilHeapSize will only work for DEBUG heaps, or in NT >= 3.51"));
        report.Line(clsDiagnosticLine().Put(u"0x").PutHex(heap.flags, 8));
        return static_cast<std::int32_t>(HeapResult::notSupported);
    }
    std::int32_t last = 0;
    auto visit = [&](void*, std::size_t bytes) {
        last = static_cast<std::int32_t>(bytes);
        return 0;
    };
    if (!UtilpHeapServices().CanWalk())
        return objectsOnly ? static_cast<std::int32_t>(NotSupported(u"UtilHeapSizeObjects"))
                           : heap.payloadBytes;
    return UtilpWalkHeap(heap, visit) ? last : static_cast<std::int32_t>(ReportCorrupted(heap));
}

} // namespace tvut
