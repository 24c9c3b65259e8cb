// Counts the DLL's allocations while the object lives, and lets them fail from a chosen one on.
#pragma once

#include "import_hook.h"

#include <oleauto.h>

#include <cstdlib>
#include <limits>

namespace testing_prof {

class clsCountedAllocations {
  public:
    explicit clsCountedAllocations(int failFrom = std::numeric_limits<int>::max()) {
        count = 0;
        failFrom_ = failFrom;
    }

    static inline int count = 0;

  private:
    static bool Refused() { return ++count >= failFrom_; }
    static void* Malloc(size_t size) { return Refused() ? nullptr : std::malloc(size); }
    static void* Calloc(size_t items, size_t size) { return Refused() ? nullptr : std::calloc(items, size); }
    static void* Realloc(void* block, size_t size) { return Refused() ? nullptr : std::realloc(block, size); }
    static void* WINAPI FromHeap(HANDLE heap, DWORD flags, SIZE_T size) {
        return Refused() ? nullptr : HeapAlloc(heap, flags, size);
    }
    static void* WINAPI FromPages(LPVOID at, SIZE_T size, DWORD type, DWORD protection) {
        return Refused() ? nullptr : VirtualAlloc(at, size, type, protection);
    }

    static HGLOBAL WINAPI FromGlobal(UINT flags, SIZE_T size) {
        return Refused() ? nullptr : GlobalAlloc(flags, size);
    }
    static BSTR WINAPI Text(LPCSTR bytes, UINT count) {
        return Refused() ? nullptr : SysAllocStringByteLen(bytes, count);
    }
    static SAFEARRAY* WINAPI Array(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
        return Refused() ? nullptr : SafeArrayCreate(type, dimensions, bounds);
    }
    static BSTR WINAPI SysAlloc(const OLECHAR* text, UINT length) {
        return Refused() ? nullptr : SysAllocStringLen(text, length);
    }
    static INT WINAPI SysReAlloc(BSTR* string, const OLECHAR* text, UINT length) {
        return Refused() ? FALSE : SysReAllocStringLen(string, text, length);
    }

    static inline int failFrom_ = 0;

    clsImportHook hooks_[10] = {{"malloc", Malloc},
                                {"calloc", Calloc},
                                {"realloc", Realloc},
                                {"HeapAlloc", FromHeap},
                                {"VirtualAlloc", FromPages},
                                {"GlobalAlloc", FromGlobal},
                                {"SysAllocStringByteLen", Text},
                                {"SafeArrayCreate", Array},
                                {"SysAllocStringLen", SysAlloc},
                                {"SysReAllocStringLen", SysReAlloc}};
};

// Does the work with the n-th allocation and all later ones failing, for every n, until it needs no more;
// and lets the check look at what came of it, with whether an allocation has failed.
template <class Work, class Check>
void FailEachAllocation(Work work, Check check) {
    bool failed = true;
    for (int n = 1; failed; ++n) {
        {
            const clsCountedAllocations failing(n);
            work();
            failed = clsCountedAllocations::count >= n;
        }
        check(failed);
    }
}

} // namespace testing_prof
