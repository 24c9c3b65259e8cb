// Counts the DLL's allocations while the object lives, and lets them fail from a chosen one on.
#pragma once

#include "import_hook.h"

#include <oleauto.h>

#include <cstdlib>
#include <limits>

namespace testing_prof {

class CountedAllocations {
  public:
    explicit CountedAllocations(int failFrom = std::numeric_limits<int>::max()) {
        count = 0;
        failFrom_ = failFrom;
    }

    static inline int count = 0;

  private:
    static bool refused() { return ++count >= failFrom_; }
    static void* malloc(size_t size) { return refused() ? nullptr : std::malloc(size); }
    static void* calloc(size_t items, size_t size) { return refused() ? nullptr : std::calloc(items, size); }
    static void* realloc(void* block, size_t size) { return refused() ? nullptr : std::realloc(block, size); }
    static void* WINAPI heapAlloc(HANDLE heap, DWORD flags, SIZE_T size) {
        return refused() ? nullptr : HeapAlloc(heap, flags, size);
    }
    static void* WINAPI virtualAlloc(LPVOID at, SIZE_T size, DWORD type, DWORD protection) {
        return refused() ? nullptr : VirtualAlloc(at, size, type, protection);
    }

    static HGLOBAL WINAPI globalAlloc(UINT flags, SIZE_T size) {
        return refused() ? nullptr : GlobalAlloc(flags, size);
    }
    static BSTR WINAPI text(LPCSTR bytes, UINT count) {
        return refused() ? nullptr : SysAllocStringByteLen(bytes, count);
    }
    static SAFEARRAY* WINAPI array(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
        return refused() ? nullptr : SafeArrayCreate(type, dimensions, bounds);
    }
    static BSTR WINAPI sysAlloc(const OLECHAR* text, UINT length) {
        return refused() ? nullptr : SysAllocStringLen(text, length);
    }
    static INT WINAPI sysReAlloc(BSTR* string, const OLECHAR* text, UINT length) {
        return refused() ? FALSE : SysReAllocStringLen(string, text, length);
    }

    static inline int failFrom_ = 0;

    ImportHook hooks_[10] = {ImportHook("malloc", reinterpret_cast<void*>(malloc)),
                             ImportHook("calloc", reinterpret_cast<void*>(calloc)),
                             ImportHook("realloc", reinterpret_cast<void*>(realloc)),
                             ImportHook("HeapAlloc", reinterpret_cast<void*>(heapAlloc)),
                             ImportHook("VirtualAlloc", reinterpret_cast<void*>(virtualAlloc)),
                             ImportHook("GlobalAlloc", reinterpret_cast<void*>(globalAlloc)),
                             ImportHook("SysAllocStringByteLen", reinterpret_cast<void*>(text)),
                             ImportHook("SafeArrayCreate", reinterpret_cast<void*>(array)),
                             ImportHook("SysAllocStringLen", reinterpret_cast<void*>(sysAlloc)),
                             ImportHook("SysReAllocStringLen", reinterpret_cast<void*>(sysReAlloc))};
};

/// Does the work with the n-th allocation and all later ones failing, for every n, until it needs no more;
/// and lets the check look at what came of it, with whether an allocation has failed.
template <class Work, class Check>
void failEachAllocation(Work work, Check check) {
    bool failed = true;
    for (int n = 1; failed; ++n) {
        {
            const CountedAllocations failing(n);
            work();
            failed = CountedAllocations::count >= n;
        }
        check(failed);
    }
}

} // namespace testing_prof
