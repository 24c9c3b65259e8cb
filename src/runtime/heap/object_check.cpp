#include "runtime/heap/object_check.h"

#include "platform/guarded.h"
#include "runtime/diagnostic_group.h"
#include "runtime/heap/object_report.h"
#include "runtime/heap/system_heap.h"

#include <cstring>

namespace tvut {

scDebugHeader* UtilpDebugObject(const clsHeapNode& heap, void* block, std::size_t bytes) noexcept {
    auto* const header = static_cast<scDebugHeader*>(block);
    bool ours = false;
    auto look = [&] { ours = header->magic == debugMagic && header->heap == heap.heap; };
    return bytes >= debugOverhead && PlatformGuarded(look) == 0 && ours ? header : nullptr;
}

Damage UtilpExamineObject(scDebugHeader* header) noexcept {
    Damage damage = Damage::magic;
    auto examine = [&] {
        if (header->magic != debugMagic)
            return;
        damage = Damage::fence;
        std::uint32_t fence;
        std::memcpy(&fence, FenceOf(header), sizeof fence);
        if (fence == fenceMark)
            damage = Damage::none;
    };
    PlatformGuarded(examine); // what cannot be read is as damaged as had been found by then
    return damage;
}

void UtilpReportOverrun(scDebugHeader* header) noexcept {
    const clsDiagnosticGroup report(
        UtilpDiagnosticsOn(),
        clsDiagnosticLine().Put(u"Error: Memory overrun, fence value has been changed"));
    UtilpDumpObject(header);
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
    if (!UtilpWalkHeap(heap, check))
        return HeapResult::corrupted;
    return whole ? HeapResult::success : HeapResult::badObject;
}

} // namespace tvut
