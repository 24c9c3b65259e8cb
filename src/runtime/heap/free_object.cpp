// An object goes back to the system in one guard with the look at it: handle, mark, and for a DEBUG object
// magic, owner and fence. Where somebody listens, or the look finds anything wrong, the look ends without a
// block, and the object is taken the long way: each step has a guard of its own, so that what it finds can be
// reported, before the same call frees the block. Reading the mark first and for itself makes the two ways
// agree on what the object is.
#include "runtime/heap/free_object.h"

#include "runtime/diagnostic_group.h"
#include "runtime/heap/object_check.h"
#include "runtime/heap/object_report.h"

namespace tvut {

namespace {

// What the words before a payload say.
struct scFound {
    bool isHeap = false;
    std::uint32_t mark = 0;       // 0 where nothing can be read
    scCallStack* stack = nullptr; // this and the size are a DEBUG object's
    std::int32_t size = 0;
};

bool IsWhole(const clsHeapNode& heap, scDebugHeader* header) noexcept {
    return header->magic == debugMagic && header->heap == heap.system.Handle() && header->size >= 0 &&
           HasFence(header);
}

// A call that frees what the words before a payload say, once a look at them has found them good.
struct scCall : clsSystemHeap::scFreeCall {
    scCall(clsHeapNode* handle, void* object) noexcept : heap(handle), payload(object) {}

    clsSystemHeap* Take() noexcept {
        mark = &MarkOf(payload);
        block = found.mark == debugMark ? static_cast<void*>(HeaderOf(payload)) : mark;
        return &heap->system;
    }

    clsHeapNode* heap;
    void* payload;
    scFound found;
};

// Looks first, and frees only where nothing is wrong.
struct scLookingCall : scCall {
    scLookingCall(clsHeapNode* handle, void* object, bool nobodyListens) noexcept
        : scCall(handle, object), silent(nobodyListens) {}

    clsSystemHeap* Look() noexcept;

    bool silent;
};

clsSystemHeap* scLookingCall::Look() noexcept {
    found.isHeap = heap->self == heap;
    if (!found.isHeap)
        return nullptr;
    found.mark = MarkOf(payload);
    std::atomic_signal_fence(std::memory_order_seq_cst); // is known even if what follows fails
    if (!silent || (found.mark != plainMark && found.mark != debugMark))
        return nullptr;
    if (found.mark == debugMark) {
        scDebugHeader* const header = HeaderOf(payload);
        if (!IsWhole(*heap, header))
            return nullptr;
        found.stack = UtilpLookAtCallStack(header->stack);
        found.size = header->size;
    }
    return Take();
}

// Frees a block, and counts out the object that it was.
template <class Call>
bool Free(Call& call) noexcept {
    if (!clsSystemHeap::Free(call))
        return false;
    clsHeapNode& heap = *call.heap;
    --heap.objects;
    if (call.found.mark == debugMark) {
        UtilpReleaseSoundCallStack(call.found.stack);
        --heap.debugObjects;
        heap.payloadBytes -= call.found.size;
    }
    return true;
}

// ---- The long way ----------------------------------------------------------------------------------

struct scLookedAtCall : scCall {
    using scCall::scCall;

    clsSystemHeap* Look() noexcept { return Take(); }
};

bool FreeLookedAt(clsHeapNode& heap, void* payload, const scFound& found) noexcept {
    scLookedAtCall call(&heap, payload);
    call.found = found;
    return Free(call);
}

// The size may be damaged, too: what is filled may end before it.
void FillFreed(void* payload, std::size_t bytes) noexcept {
    auto fill = [&] { std::memset(payload, freedFill, bytes); };
    PlatformGuarded(fill);
}

void ReleaseRecord(scDebugHeader* header) noexcept {
    scCallStack* stack = nullptr;
    auto take = [&] { stack = std::exchange(header->stack, nullptr); };
    if (PlatformGuarded(take) == 0)
        UtilpReleaseCallStack(stack);
}

void ReportDebug(const clsHeapNode& heap, scDebugHeader* header, const clsDiagnosticLine& what,
                 bool dumped) noexcept {
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                    UtilpHeapCallLine(u"Error: ", heap, u"FreeObjectD", PayloadOf(header)));
    report.Line(what);
    if (dumped)
        UtilpDumpObject(header);
}

HeapResult RefuseDebug(const clsHeapNode& heap, scDebugHeader* header, std::u16string_view why,
                       bool dumped) noexcept {
    ReportDebug(heap, header, clsDiagnosticLine().Put(why), dumped);
    return HeapResult::badObject;
}

bool HasBadSize(clsHeapNode& heap, const scDebugHeader* header, bool on) noexcept {
    return header->size < 0 ||
           (on && !heap.system.IsBroken() &&
            heap.system.SizeOf(header) != static_cast<std::size_t>(header->size) + debugOverhead);
}

// An object that is whole, as far as its words can tell.
HeapResult FreeWholeDebug(clsHeapNode& heap, scDebugHeader* header) noexcept {
    if (header->heap != heap.system.Handle())
        return RefuseDebug(heap, header, u"error freeing object", true);
    const scFound found{true, debugMark, nullptr, header->size}; // the record is released before
    const bool on = UtilpDiagnosticsOn();
    if (HasBadSize(heap, header, on))
        ReportDebug(heap, header, clsDiagnosticLine().Put(u"bad size ").Put(found.size), true);
    else if (on)
        FillFreed(PayloadOf(header), static_cast<std::size_t>(found.size));
    ReleaseRecord(header);
    return FreeLookedAt(heap, PayloadOf(header), found)
               ? HeapResult::success
               : RefuseDebug(heap, header, u"error freeing object", true);
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

clsDiagnosticLine PlainLine(const clsHeapNode& heap, void* payload) noexcept {
    return UtilpHeapCallLine(u"Error: ", heap, u"FreeObjectND", payload);
}

void FillFreedPlain(clsHeapNode& heap, void* payload) noexcept {
    const std::size_t size = heap.system.SizeOf(&MarkOf(payload));
    const auto signedSize = static_cast<std::int32_t>(size);
    if (signedSize >= static_cast<std::int32_t>(plainOverhead))
        FillFreed(payload, size - plainOverhead);
    else
        UtilpReportCall(PlainLine(heap, payload),
                        clsDiagnosticLine().Put(u"bad object size ").Put(signedSize));
}

HeapResult FreePlain(clsHeapNode& heap, void* payload) noexcept {
    if (UtilpDiagnosticsOn())
        FillFreedPlain(heap, payload);
    if (FreeLookedAt(heap, payload, {true, plainMark}))
        return HeapResult::success;
    UtilpReportCall(PlainLine(heap, payload), clsDiagnosticLine().Put(u"error freeing object"));
    return HeapResult::badObject;
}

HeapResult FreeTheLongWay(clsHeapNode& heap, void* payload, std::uint32_t mark) noexcept {
    switch (mark) {
    case plainMark:
        return FreePlain(heap, payload);
    case debugMark:
        return FreeDebug(heap, HeaderOf(payload));
    default:
        UtilpReportBadPointer(UtilpHeapCallLine(u"Error: ", heap, u"FreeObject", payload), mark, u"");
        return HeapResult::badObject;
    }
}

} // namespace

HeapResult UtilpFreeObject(clsHeapNode* heap, void* payload, bool silent) noexcept {
    scLookingCall call(heap, payload, silent);
    if (Free(call))
        return HeapResult::success;
    return call.found.isHeap ? FreeTheLongWay(*heap, payload, call.found.mark) : HeapResult::badObject;
}

} // namespace tvut
