// The system validates its own words, and the marks and fences of objects are checked after it: they can be
// trusted to lie where the walk finds them only in a heap whose own words are sound.
#include "runtime/heap/examine_heap.h"

#include "runtime/diagnostic_group.h"
#include "runtime/heap/object_check.h"
#include "runtime/heap/object_report.h"

namespace tvut {

namespace {

// What a caller calls an object, by its mark.
struct scObject {
    void* block = nullptr; // null where there is no object
    std::size_t overhead = 0;
    std::uint32_t mark = 0; // 0 where nothing can be read
};

scObject ObjectAt(void* payload) noexcept {
    std::uint32_t mark = 0;
    auto read = [&] { mark = MarkOf(payload); };
    PlatformGuarded(read);
    switch (mark) {
    case plainMark:
        return {&MarkOf(payload), plainOverhead, mark};
    case debugMark:
        return {HeaderOf(payload), debugOverhead, mark};
    default:
        return {nullptr, 0, mark};
    }
}

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

} // namespace

std::int32_t UtilpObjectSize(clsHeapNode& heap, void* payload) noexcept {
    const scObject object = ObjectAt(payload);
    if (!object.block) {
        UtilpReportBadPointer(UtilpHeapCallLine(u"Error: ", heap, u"SizeObject", payload), object.mark,
                              u"\n");
        return static_cast<std::int32_t>(HeapResult::badObject);
    }
    const std::size_t size = heap.system.SizeOf(object.block);
    if (size >= object.overhead && size <= INT32_MAX)
        return static_cast<std::int32_t>(size - object.overhead);
    if (heap.IsDebug())
        UtilpReportCall(UtilpHeapCallLine(u"Warning: ", heap, u"SizeObject", payload).Put(u":"),
                        clsDiagnosticLine().Put(u"Object has a size of 0 (bad pointer?)\n"));
    return 0;
}

HeapResult UtilpValidateHeap(clsHeapNode& heap, void* payload) noexcept {
    if (!clsSystemHeap::CanValidate())
        return NotSupported(u"UtilHeapValidate");
    const scObject object = payload ? ObjectAt(payload) : scObject();
    if (payload && !object.block) {
        UtilpReportBadPointer(UtilpHeapCallLine(u"Error: ", heap, u"ValidateHeap", payload), object.mark,
                              u"");
        return HeapResult::badObject;
    }
    if (!heap.system.IsValid(object.block))
        return ReportCorrupted(heap);
    const HeapResult result = heap.IsDebug() ? UtilpCheckObjects(heap) : HeapResult::success;
    return result == HeapResult::corrupted ? ReportCorrupted(heap) : result;
}

HeapResult UtilpCheckObjects(clsHeapNode& heap) noexcept {
    bool whole = true;
    auto check = [&](void* block, std::size_t bytes) {
        scDebugHeader* const header = UtilpDebugObject(heap, block, bytes);
        if (!header || UtilpExamineObject(header) == Damage::none)
            return 0;
        whole = false;
        UtilpReportOverrun(header);
        return 0;
    };
    if (!heap.system.Walk(check))
        return HeapResult::corrupted;
    return whole ? HeapResult::success : HeapResult::badObject;
}

HeapResult UtilpShrinkHeap(clsHeapNode& heap) noexcept {
    if (!clsSystemHeap::CanCompact())
        return NotSupported(u"UtilHeapShrink");
    if (heap.system.Compact() != 0)
        return HeapResult::success;
    UtilpReport(UtilpHeapCallLine(u"Error: ", heap, u"ShrinkHeap", &heap).Put(u" failed"));
    return HeapResult::failed;
}

std::int32_t UtilpHeapSize(clsHeapNode& heap, bool objectsOnly) noexcept {
    if (!objectsOnly && !heap.IsDebug()) {
        UtilpReportCall(
            clsDiagnosticLine().Put(u"UtilHeapSize will only work for DEBUG heaps, or in NT >= 3.51"),
            clsDiagnosticLine().Put(u"0x").PutHex(heap.flags, 8));
        return static_cast<std::int32_t>(HeapResult::notSupported);
    }
    std::int32_t last = 0;
    auto visit = [&](void*, std::size_t bytes) {
        last = static_cast<std::int32_t>(bytes);
        return 0;
    };
    if (!clsSystemHeap::CanWalk())
        return objectsOnly ? static_cast<std::int32_t>(NotSupported(u"UtilHeapSizeObjects"))
                           : heap.payloadBytes;
    return heap.system.Walk(visit) ? last : static_cast<std::int32_t>(ReportCorrupted(heap));
}

} // namespace tvut
