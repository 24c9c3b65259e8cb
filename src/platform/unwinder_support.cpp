// What the compiler's unwinder asks of a system, in place of what its runtime would give it.
//
// The runtime's locks come with a layer for threads that keeps an index of thread-local storage for ever: a
// process has 1,088 of them, and each time the library is loaded one more would be lost. The unwinder needs
// three calls of that layer; these definitions take their place, and the layer is not linked.
//
// It also registers the library's unwind tables with the runtime's DLL where the program has loaded one, and
// not with the copy that is linked here and does the unwinding: nothing thrown would ever be caught. It asks
// for that DLL by the 8-bit form of a call that the library does not use itself, and finds none.
//
// Other compilers need none of this.
#ifdef __MINGW32__

#include <atomic>
#include <cassert>
#include <cstdlib>
#include <pthread.h>
#include <windows.h>

namespace {

SRWLOCK onceLock = SRWLOCK_INIT;

// The unwinder keeps a word for its lock, which that word can be.
SRWLOCK* LockOf(pthread_mutex_t* mutex) noexcept {
    static_assert(sizeof(SRWLOCK) == sizeof *mutex);
    return reinterpret_cast<SRWLOCK*>(mutex);
}

HMODULE WINAPI FindNoModule(LPCSTR) noexcept {
    return nullptr;
}

} // namespace

// The names are those that the unwinder asks for.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t*) {
    InitializeSRWLock(LockOf(mutex));
    return 0;
}
int pthread_mutex_lock(pthread_mutex_t* mutex) {
    AcquireSRWLockExclusive(LockOf(mutex));
    return 0;
}
int pthread_mutex_unlock(pthread_mutex_t* mutex) {
    ReleaseSRWLockExclusive(LockOf(mutex));
    return 0;
}
int pthread_once(pthread_once_t* done, void (*function)()) {
    const std::atomic_ref isDone(*done);
    if (isDone.load(std::memory_order_acquire) != 0)
        return 0;
    AcquireSRWLockExclusive(&onceLock);
    if (isDone == 0)
        function();
    isDone = 1;
    ReleaseSRWLockExclusive(&onceLock);
    return 0;
}

extern const decltype(&FindNoModule) importedGetModuleHandleA __asm__("__imp__GetModuleHandleA@4");
const decltype(&FindNoModule) importedGetModuleHandleA = FindNoModule;

} // extern "C"
// NOLINTEND(readability-identifier-naming)

// What a failed check of the standard library calls comes with the whole layer as well.
#ifdef _GLIBCXX_ASSERTIONS
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl58-cpp)
void std::__glibcxx_assert_fail(const char* file, int line, const char*, const char* condition) noexcept {
    _assert(condition ? condition : "unreachable", file ? file : "?", static_cast<unsigned>(line));
    std::abort();
}
#endif

#endif
