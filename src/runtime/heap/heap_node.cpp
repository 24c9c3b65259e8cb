#include "runtime/heap/heap_node.h"

namespace tvut {

bool UtilpIsHeap(const clsHeapNode* heap) noexcept {
    bool isHeap = false;
    auto look = [&] { isHeap = heap->self == heap; };
    return PlatformGuarded(look) == 0 && isHeap;
}

clsDiagnosticLine UtilpHeapLine(std::u16string_view beginning, const clsHeapNode& heap) noexcept {
    return clsDiagnosticLine()
        .Put(beginning)
        .Put(u"clsHeapNode['")
        .Put(heap.module->Name())
        .Put(u"'/'")
        .Put(heap.ShownName())
        .Put(u"']::");
}

clsDiagnosticLine UtilpHeapCallLine(std::u16string_view beginning, const clsHeapNode& heap,
                                    std::u16string_view call, const void* payload) noexcept {
    return UtilpHeapLine(beginning, heap).Put(call).Put(u"(").PutPointer(payload).Put(u")");
}

} // namespace tvut
