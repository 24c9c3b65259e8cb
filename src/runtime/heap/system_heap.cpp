#include "runtime/heap/system_heap.h"

#include "platform/critical_section.h"
#include "platform/guarded.h"

#include <mutex>

namespace tvut {

namespace {

// More than fit into the address space: a damaged heap may lead in a circle.
constexpr int mostEntries = 1 << 29;

clsCriticalSection lookUpLock;
bool lookedUp = false;
scHeapServices services{};

template <class Function>
void LookUp(HMODULE module, const char* name, Function& function) noexcept {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

} // namespace

const scHeapServices& UtilpHeapServices() noexcept {
    const std::lock_guard lock(lookUpLock);
    if (!lookedUp) {
        const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
        LookUp(kernel, "HeapWalk", services.walk);
        LookUp(kernel, "HeapLock", services.lock);
        LookUp(kernel, "HeapUnlock", services.unlock);
        LookUp(kernel, "HeapCompact", services.compact);
        LookUp(kernel, "HeapValidate", services.validate);
        lookedUp = true;
    }
    return services;
}

bool UtilpWalkHeap(clsHeapNode& heap, HeapBlockVisitor visitor, void* context) noexcept {
    const scHeapServices& system = UtilpHeapServices();
    if (heap.broken || !system.CanWalk())
        return false;
    const bool lockable = (heap.flags & HeapFlag::unserialised) == 0;
    if (lockable)
        system.lock(heap.heap);
    DWORD end = ERROR_NO_MORE_ITEMS;
    auto walk = [&] {
        PROCESS_HEAP_ENTRY entry{};
        for (int entries = 0; entries < mostEntries && system.walk(heap.heap, &entry); ++entries)
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 &&
                visitor(context, entry.lpData, entry.cbData) < 0)
                return;
        end = GetLastError();
    };
    if (PlatformGuarded(walk) != 0) {
        heap.broken = true;
        end = ERROR_INVALID_DATA;
    }
    if (lockable && !heap.broken)
        system.unlock(heap.heap);
    return end == ERROR_NO_MORE_ITEMS;
}

} // namespace tvut
