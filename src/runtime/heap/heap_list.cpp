// A heap goes in an order that damage cannot disturb: it leaves the list, is reported while its objects can
// still be read, releases the records of call stacks that its DEBUG objects have, and only then
// returns its memory. The handle's own word is unmade last, so that a stale handle is recognised as long as
// its memory is not used again.
#include "runtime/heap/heap_list.h"

#include "platform/process_heap.h"
#include "runtime/diagnostic_group.h"
#include "runtime/heap/examine_heap.h"
#include "runtime/heap/object_check.h"
#include "runtime/heap/object_report.h"
#include "runtime/stack_names.h"

namespace tvut {

namespace {

std::uint32_t FlagsOf(const clsModuleNode& module, std::uint32_t flags) noexcept {
    if ((flags & heapFlag::neverDebug) != 0)
        return flags & ~heapFlag::debug;
    return (module.flags & clsModuleNode::debugHeapsFlag) != 0 ? flags | heapFlag::debug : flags;
}

DWORD OptionsOf(std::uint32_t flags) noexcept {
    return ((flags & heapFlag::unserialised) != 0 ? HEAP_NO_SERIALIZE : 0u) |
           ((flags & heapFlag::exceptions) != 0 ? HEAP_GENERATE_EXCEPTIONS : 0u);
}

clsHeapNode* MakeNode(clsModuleNode& module, std::u16string_view name, std::uint32_t flags) noexcept {
    auto* const heap = static_cast<clsHeapNode*>(PlatformProcessHeapAlloc(sizeof(clsHeapNode)));
    if (!heap)
        return nullptr;
    heap->module = &module;
    name.copy(heap->name.data(), clsHeapNode::longestName);
    heap->flags = FlagsOf(module, flags);
    if (!heap->system.Create(OptionsOf(flags))) {
        PlatformProcessHeapFree(heap);
        return nullptr;
    }
    if (heap->IsDebug()) {
        heap->creation = UtilpCaptureCallStack(0);
        UtilpWantStackNames();
    }
    heap->self = heap;
    return heap;
}

void Link(clsHeapNode& heap) noexcept {
    clsModuleNode& module = *heap.module;
    heap.previous = module.lastHeap;
    (module.lastHeap ? module.lastHeap->next : module.firstHeap) = &heap;
    module.lastHeap = &heap;
}

void Unlink(clsHeapNode& heap) noexcept {
    (heap.previous ? heap.previous->next : heap.module->firstHeap) = heap.next;
    (heap.next ? heap.next->previous : heap.module->lastHeap) = heap.previous;
}

void ReportStatistics(const clsHeapNode& heap) noexcept {
    if (heap.mostObjects > 0)
        UtilpReport(UtilpShownHeapLine(heap)
                        .Put(u"max ")
                        .Put(heap.mostObjects)
                        .Put(u", total ")
                        .Put(heap.allocations)
                        .Put(u" allocations"));
}

void ReportLeftObjects(clsHeapNode& heap) noexcept {
    if (heap.objects <= 0 || (heap.flags & heapFlag::silentDelete) != 0)
        return;
    const clsDiagnosticGroup report(
        true, clsDiagnosticLine().Put(u"Warning: deleting heap, but objects are left:"));
    UtilpReportObjects(heap);
}

// The system's heap takes the objects with it, but not the records of who allocated them.
void ReleaseCallStacks(clsHeapNode& heap) noexcept {
    auto release = [&](void* block, std::size_t bytes) {
        if (scDebugHeader* const header = UtilpDebugObject(heap, block, bytes))
            UtilpReleaseCallStack(header->stack);
        return 0;
    };
    if (heap.debugObjects > 0)
        heap.system.Walk(release);
}

void Report(clsHeapNode& heap) noexcept {
    if (heap.IsDebug())
        UtilpCheckObjects(heap);
    ReportStatistics(heap);
    ReportLeftObjects(heap);
}

} // namespace

clsHeapNode* UtilpCreateHeap(clsModuleNode& module, std::u16string_view name, std::uint32_t flags) noexcept {
    if ((flags & heapFlag::refused) != 0)
        return nullptr;
    clsHeapNode* const heap = MakeNode(module, name, flags);
    if (!heap) {
        UtilpReport(clsDiagnosticLine()
                        .Put(u"Error: clsModuleNode['")
                        .Put(module.Name())
                        .Put(u"']::AddHeap('")
                        .Put(name.empty() ? u"(NULL)" : name)
                        .Put(u"',0x")
                        .PutHex(flags, 8)
                        .Put(u"): Out of Memory"));
        return nullptr;
    }
    Link(*heap);
    if (heap->IsDebug())
        UtilpReport(clsDiagnosticLine()
                        .Put(module.Name())
                        .Put(u": UtilHeapCreate(..,'")
                        .Put(heap->ShownName())
                        .Put(u"',..) called with DEBUG bit"));
    return heap;
}

HeapResult UtilpDeleteHeap(clsHeapNode& heap) noexcept {
    Unlink(heap);
    if (UtilpDiagnosticsOn())
        Report(heap);
    ReleaseCallStacks(heap);
    heap.system.Destroy();
    UtilpReleaseCallStack(heap.creation);
    heap.self = nullptr;
    PlatformProcessHeapFree(&heap);
    return HeapResult::success;
}

void UtilpDestroyLeftHeaps(clsModuleNode& module) noexcept {
    while (clsHeapNode* const heap = module.firstHeap) {
        if (UtilpDiagnosticsOn())
            UtilpReportObjects(*heap);
        UtilpDeleteHeap(*heap);
    }
}

} // namespace tvut
