// The system does not say who holds the loader's lock, but the process block has the lock's address, at a
// place that has not moved in 32-bit processes since Windows NT, and ntdll says who owns a critical section.
// Where either is missing the answer is no, as for a program that never asks.
#include "platform/loader.h"

#include <atomic>
#include <cstddef>
#include <windows.h>

namespace tvut {

namespace {

// A function of ntdll, which is always there: nothing is loaded to find it.
template <class Function>
class clsNativeFunction {
  public:
    explicit constexpr clsNativeFunction(const char* name) noexcept : name_(name) {}

    // Null when the system has no such function.
    Function* Get() noexcept {
        Function* found = function_.load(std::memory_order_relaxed);
        if (!found) {
            found = reinterpret_cast<Function*>(
                reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name_)));
            function_.store(found, std::memory_order_relaxed);
        }
        return found;
    }

  private:
    const char* name_;
    std::atomic<Function*> function_{nullptr};
};

constinit clsNativeFunction<BOOL WINAPI(CRITICAL_SECTION*)> isLockedByThread{
    "RtlIsCriticalSectionLockedByThread"};
constinit clsNativeFunction<BOOLEAN WINAPI()> shutdownInProgress{"RtlDllShutdownInProgress"};

constinit clsNativeFunction<std::byte * WINAPI()> currentProcessBlock{"RtlGetCurrentPeb"};

constexpr std::size_t callbackTableAt = 0x2C; // in the process block of a 32-bit process; user32 fills it in
constexpr std::size_t loaderLockAt = 0xA0;

CRITICAL_SECTION* LoaderLock() noexcept {
    const auto processBlock = currentProcessBlock.Get();
    return processBlock ? *reinterpret_cast<CRITICAL_SECTION**>(processBlock() + loaderLockAt) : nullptr;
}

} // namespace

bool PlatformHoldsLoaderLock() noexcept {
    const auto isLocked = isLockedByThread.Get();
    CRITICAL_SECTION* const lock = LoaderLock();
    return isLocked && lock && isLocked(lock) != FALSE;
}

bool PlatformProcessEnds() noexcept {
    const auto ends = shutdownInProgress.Get();
    return ends && ends() != FALSE;
}

// Asked by name, the system may look through folders for a library that is not loaded.
bool PlatformWindowsAreUp() noexcept {
    const auto processBlock = currentProcessBlock.Get();
    return processBlock && *reinterpret_cast<void**>(processBlock() + callbackTableAt) &&
           GetModuleHandleW(L"user32.dll");
}

} // namespace tvut
