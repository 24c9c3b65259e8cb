// A walk asks the system for one entry after the other, each under a guard. The system tells damage in
// several ways: by an exception, by an error, by an end that comes too early, or by entries that lead in a
// circle. The first and the last mean that the heap cannot be entered any more. An early end shows in the
// number of blocks, which is counted here.
#include "runtime/heap/system_heap.h"

namespace tvut {

namespace {

constexpr SIZE_T initialBytes = 32768;

// Looked up once, when the library is loaded: later on, the loader's lock may be somebody's who waits for
// ours. What is missing is null.
struct scHeapServices {
    BOOL(WINAPI* walk)(HANDLE, PROCESS_HEAP_ENTRY*);
    BOOL(WINAPI* lock)(HANDLE);
    BOOL(WINAPI* unlock)(HANDLE);
    SIZE_T(WINAPI* compact)(HANDLE, DWORD);
    BOOL(WINAPI* validate)(HANDLE, DWORD, const void*);
};

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

// Keeps other threads out of a heap. One that breaks meanwhile stays locked: to unlock it would enter it.
class clsHeapLock {
  public:
    explicit clsHeapLock(const clsSystemHeap& heap) noexcept : heap_(heap) {
        if (heap_.IsSerialised())
            services.lock(heap_.Handle());
    }
    ~clsHeapLock() {
        if (heap_.IsSerialised() && !heap_.IsBroken())
            services.unlock(heap_.Handle());
    }
    clsHeapLock(const clsHeapLock&) = delete;
    clsHeapLock& operator=(const clsHeapLock&) = delete;

  private:
    const clsSystemHeap& heap_;
};

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

bool clsSystemHeap::CanWalk() noexcept {
    return services.walk && services.lock && services.unlock;
}

bool clsSystemHeap::CanCompact() noexcept {
    return services.compact != nullptr;
}

bool clsSystemHeap::CanValidate() noexcept {
    return services.validate && CanWalk();
}

bool clsSystemHeap::Create(DWORD options) noexcept {
    options_ = options;
    handle_ = HeapCreate(options, initialBytes, 0);
    return handle_ != nullptr;
}

void clsSystemHeap::Destroy() noexcept {
    if (!broken_)
        Enter([&] { HeapDestroy(handle_); });
}

std::size_t clsSystemHeap::SizeOf(const void* block) noexcept {
    if (broken_)
        return 0;
    SIZE_T size = 0;
    const unsigned long exception =
        Enter([&] { LookBefore(block); }, [&] { size = HeapSize(handle_, Serialisation(), block); });
    return exception == 0 ? size : 0;
}

bool clsSystemHeap::IsValid(const void* block) noexcept {
    if (broken_)
        return false;
    BOOL valid = FALSE;
    const unsigned long exception = Enter(
        [&] {
            if (block)
                LookBefore(block);
        },
        [&] { valid = services.validate(handle_, Serialisation(), block); });
    return exception == 0 && valid;
}

std::size_t clsSystemHeap::Compact() noexcept {
    SIZE_T largest = 0;
    if (!broken_)
        Enter([&] { largest = services.compact(handle_, Serialisation()); });
    return broken_ ? 0 : largest;
}

bool clsSystemHeap::WalkBlocks(BlockVisitor visitor, void* context) noexcept {
    if (broken_ || !CanWalk())
        return false;
    const clsHeapLock lock(*this);
    clsHeapWalk walk(handle_);
    bool enough = false;
    std::int32_t met = 0;
    while (!enough && walk.Step()) {
        const PROCESS_HEAP_ENTRY& entry = walk.Entry();
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0)
            continue;
        ++met;
        enough = visitor(context, entry.lpData, entry.cbData) < 0;
    }
    broken_ = walk.Broken();
    return enough || (walk.AtEnd() && met >= blocks_);
}

} // namespace tvut
