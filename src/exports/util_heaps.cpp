// Exports of the checked heaps: the global lock, the trace, and the heap without a handle.
#include "exports/call_trace.h"
#include "exports/wide_text.h"
#include "runtime/heap/allocate_object.h"
#include "runtime/heap/examine_heap.h"
#include "runtime/heap/free_object.h"
#include "runtime/heap/heap_list.h"
#include "runtime/heap/runtime_heap.h"
#include "runtime/jobs.h"
#include "runtime/locked_call.h"
#include "runtime/stack_names.h"

#include <tvut22/heaps.h>

using namespace tvut;

namespace {

// The core knows no public header of this family.
static_assert(heapFlag::zero == UTIL_HEAP_ZERO && heapFlag::fill == UTIL_HEAP_FILL &&
              heapFlag::noStack == UTIL_HEAP_NO_STACK && heapFlag::unserialised == UTIL_HEAP_UNSERIALISED &&
              heapFlag::exceptions == UTIL_HEAP_EXCEPTIONS && heapFlag::neverDebug == UTIL_HEAP_NEVER_DEBUG &&
              heapFlag::silentDelete == UTIL_HEAP_SILENT_DELETE && heapFlag::debug == UTIL_HEAP_DEBUG);

constexpr bool Is(HeapResult result, INT number) {
    return static_cast<INT>(result) == number;
}
static_assert(Is(HeapResult::success, UTIL_OK) && Is(HeapResult::failed, UTIL_HEAP_FAILED) &&
              Is(HeapResult::corrupted, UTIL_HEAP_CORRUPTED) &&
              Is(HeapResult::badObject, UTIL_HEAP_BAD_OBJECT) &&
              Is(HeapResult::notSupported, UTIL_HEAP_NOT_SUPPORTED));

clsHeapNode* FromHandle(UtilHeap heap) noexcept {
    return reinterpret_cast<clsHeapNode*>(heap);
}

clsDiagnosticLine TraceLine(std::u16string_view call, const clsHeapNode& heap) noexcept {
    return clsDiagnosticLine()
        .Put(call)
        .Put(u"(")
        .PutPointer(&heap)
        .Put(u") ['")
        .Put(heap.module->Name())
        .Put(u"','")
        .Put(heap.ShownName())
        .Put(u"']");
}

clsDiagnosticLine CreateTraceLine(UtilJob job, const wchar_t* name, UINT flags) noexcept {
    return clsDiagnosticLine()
        .Put(u"UtilHeapCreate(")
        .PutPointer(job)
        .Put(u",'")
        .Put(UtilpShown(name))
        .Put(u"',0x")
        .PutHex(flags, 8)
        .Put(u")");
}

// A call on a heap as a whole, traced where the heap's job asks for it.
template <class Call, class Refuse>
INT OnHeap(UtilHeap handle, std::u16string_view name, Call call, Refuse refuse) noexcept {
    if (!handle)
        return UTIL_OK;
    const clsGlobalLockGuard lock;
    clsHeapNode* const heap = FromHandle(handle);
    if (!UtilpIsHeap(heap))
        return refuse();
    const clsCallTrace trace(heap->Traced(), [&] { return TraceLine(name, *heap); });
    return trace.Result(static_cast<INT>(call(*heap)));
}

template <class Call>
INT OnHeap(UtilHeap handle, std::u16string_view name, Call call) noexcept {
    return OnHeap(handle, name, call, [] { return UTIL_HEAP_FAILED; });
}

INT DeleteUnknown(const void* handle) noexcept {
    UtilpReport(clsDiagnosticLine()
                    .Put(u"Error: clsModuleNode['(NULL)']::DeleteHeap(")
                    .PutPointer(handle)
                    .Put(u"): Invalid handle"));
    return UTIL_HEAP_FAILED;
}

UtilHeap Create(UtilJob job, const wchar_t* name, UINT flags) noexcept {
    const clsGlobalLockGuard lock;
    auto* const module = reinterpret_cast<clsModuleNode*>(job);
    if (!module || !UtilpJobs().Holds(module))
        return nullptr;
    const clsCallTrace trace(module->Traced(), [&] { return CreateTraceLine(job, name, flags); });
    return reinterpret_cast<UtilHeap>(trace.Result(UtilpCreateHeap(*module, UtilpView(name), flags)));
}

// The system's exception is the caller's: it leaves with the lock released.
void* Allocate(UtilHeap handle, const scAllocation& wanted) {
    if (!handle)
        return UtilpRuntimeAllocate(wanted.size, wanted.flags);
    void* payload = nullptr;
    unsigned long exception = 0;
    {
        const clsGlobalLockGuard lock;
        payload = UtilpAllocateObject(FromHandle(handle), wanted, exception);
    }
    if (exception == STATUS_NO_MEMORY)
        RaiseException(exception, 0, 0, nullptr);
    return payload;
}

} // namespace

TVUT22_API UtilHeap TVUT22_CALL UtilHeapCreate(UtilJob job, const wchar_t* name, UINT flags) {
    const UtilHeap heap = Create(job, name, flags);
    UtilpPrepareStackNames();
    return heap;
}

TVUT22_API INT TVUT22_CALL UtilHeapDelete(UtilHeap heap) {
    UtilpPrepareStackNames();
    return OnHeap(heap, u"UtilHeapDelete", UtilpDeleteHeap, [=] { return DeleteUnknown(heap); });
}

TVUT22_API INT TVUT22_CALL UtilHeapValidate(UtilHeap heap, void* payload, UINT) {
    return OnHeap(heap, u"UtilHeapValidate",
                  [=](clsHeapNode& node) { return UtilpValidateHeap(node, payload); });
}

TVUT22_API INT TVUT22_CALL UtilHeapShrink(UtilHeap heap, UINT) {
    return OnHeap(heap, u"UtilHeapShrink", UtilpShrinkHeap);
}

TVUT22_API INT TVUT22_CALL UtilHeapSize(UtilHeap heap) {
    return OnHeap(heap, u"UtilHeapSize", [](clsHeapNode& node) { return UtilpHeapSize(node, false); });
}

TVUT22_API INT TVUT22_CALL UtilHeapSizeObjects(UtilHeap heap) {
    return OnHeap(heap, u"UtilHeapSizeObjects", [](clsHeapNode& node) { return UtilpHeapSize(node, true); });
}

TVUT22_API void* TVUT22_CALL UtilHeapObjectAlloc(UtilHeap heap, INT size, UINT flags) {
    return Allocate(heap, {size, flags, 0});
}

TVUT22_API void* TVUT22_CALL UtilHeapObjectAllocExt(UtilHeap heap, INT size, UINT flags, UINT tag, UINT) {
    return Allocate(heap, {size, flags, tag});
}

TVUT22_API INT TVUT22_CALL UtilHeapObjectFree(UtilHeap heap, void* payload) {
    if (!heap) {
        UtilpRuntimeFree(payload);
        return UTIL_OK;
    }
    const clsGlobalLockGuard lock;
    return static_cast<INT>(UtilpFreeObject(FromHandle(heap), payload, lock.Silent()));
}

TVUT22_API INT TVUT22_CALL UtilHeapObjectSize(UtilHeap heap, void* payload) {
    if (!heap)
        return UtilpRuntimeSize(payload);
    const clsGlobalLockGuard lock;
    clsHeapNode* const node = FromHandle(heap);
    return UtilpIsHeap(node) ? UtilpObjectSize(*node, payload) : UTIL_HEAP_BAD_OBJECT;
}
