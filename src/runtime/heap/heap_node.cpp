#include "runtime/heap/heap_node.h"

namespace tvut {

namespace {

clsDiagnosticLine& PutNames(clsDiagnosticLine& line, const clsHeapNode& heap) noexcept {
    return line.Put(u"['").Put(heap.module->Name()).Put(u"'/'").Put(heap.ShownName()).Put(u"']");
}

} // namespace

bool UtilpIsHeap(const clsHeapNode* heap) noexcept {
    bool isHeap = false;
    auto look = [&] { isHeap = heap->self == heap; };
    return PlatformGuarded(look) == 0 && isHeap;
}

clsDiagnosticLine UtilpHeapLine(std::u16string_view beginning, const clsHeapNode& heap) noexcept {
    return PutNames(clsDiagnosticLine().Put(beginning).Put(u"clsHeapNode"), heap).Put(u"::");
}

clsDiagnosticLine UtilpShownHeapLine(const clsHeapNode& heap) noexcept {
    return PutNames(clsDiagnosticLine().Put(u"Heap"), heap).Put(u": ");
}

clsDiagnosticLine UtilpHeapCallLine(std::u16string_view beginning, const clsHeapNode& heap,
                                    std::u16string_view call, const void* payload) noexcept {
    return UtilpHeapLine(beginning, heap).Put(call).Put(u"(").PutPointer(payload).Put(u")");
}

} // namespace tvut
