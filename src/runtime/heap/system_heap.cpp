#include "runtime/heap/system_heap.h"

#include "platform/guarded.h"

namespace tvut {

namespace {

template <class Function>
void LookUp(HMODULE module, const char* name, Function& function) noexcept {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

scHeapServices LookUpAll() noexcept {
    scHeapServices services{};
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    LookUp(kernel, "HeapWalk", services.walk);
    LookUp(kernel, "HeapLock", services.lock);
    LookUp(kernel, "HeapUnlock", services.unlock);
    LookUp(kernel, "HeapCompact", services.compact);
    LookUp(kernel, "HeapValidate", services.validate);
    return services;
}

const scHeapServices services = LookUpAll();

// The steps of a walk. Damage may lead in a circle: one that comes by the same entry again has no end.
class clsHeapWalk {
  public:
    explicit clsHeapWalk(HANDLE heap) noexcept : heap_(heap) {}

    // False at the end, and where the system fails.
    bool Step() noexcept {
        BOOL there = FALSE;
        auto step = [&] {
            there = services.walk(heap_, &entry_);
            if (!there)
                end_ = GetLastError();
        };
        broken_ = PlatformGuarded(step) != 0;
        if (!there || broken_)
            return false;
        broken_ = entry_.lpData == seen_ && entry_.wFlags == seenFlags_;
        if (++steps_ == nextSeen_) {
            seen_ = entry_.lpData;
            seenFlags_ = entry_.wFlags;
            nextSeen_ *= 2;
        }
        return !broken_;
    }

    const PROCESS_HEAP_ENTRY& Entry() const noexcept { return entry_; }
    bool Broken() const noexcept { return broken_; }
    bool AtEnd() const noexcept { return !broken_ && end_ == ERROR_NO_MORE_ITEMS; }

  private:
    HANDLE heap_;
    PROCESS_HEAP_ENTRY entry_{};
    DWORD end_ = ERROR_INVALID_DATA;
    bool broken_ = false;
    std::uint32_t steps_ = 0, nextSeen_ = 1;
    const void* seen_ = nullptr; // the entry of the last step whose number is a power of two
    WORD seenFlags_ = 0;
};

} // namespace

const scHeapServices& UtilpHeapServices() noexcept {
    return services;
}

bool UtilpWalkHeap(clsHeapNode& heap, HeapBlockVisitor visitor, void* context) noexcept {
    if (heap.broken || !services.CanWalk())
        return false;
    const bool lockable = (heap.flags & HeapFlag::unserialised) == 0;
    if (lockable)
        services.lock(heap.heap);
    clsHeapWalk walk(heap.heap);
    bool enough = false;
    std::int32_t met = 0;
    while (!enough && walk.Step()) {
        const PROCESS_HEAP_ENTRY& entry = walk.Entry();
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0)
            continue;
        ++met;
        enough = visitor(context, entry.lpData, entry.cbData) < 0;
    }
    heap.broken = walk.Broken();
    if (lockable && !heap.broken)
        services.unlock(heap.heap);
    return enough || (walk.AtEnd() && met >= heap.blocks);
}

} // namespace tvut
