// One reference serves all holders. The loader is asked with the lock free: somebody within it may wait for
// that.
#include "platform/held_library.h"

#include "platform/lock.h"

#include <atomic>
#include <mutex>

namespace tvut {

namespace {

constexpr DWORD delay = 1000; // milliseconds

constinit clsLock stateLock;
constinit unsigned holders = 0;        // these four are guarded by the lock
constinit HMODULE held = nullptr;      // the reference
constinit bool isTimerOn = false;      // somebody will look whether the library may go
constinit ULONGLONG lastReleaseAt = 0; // as GetTickCount64

constinit std::atomic<void (*)() noexcept> beforeItGoes{nullptr};

bool HoldIfHeld() noexcept {
    const std::lock_guard lock(stateLock);
    if (held)
        ++holders;
    return held;
}

// The time until the library may go, in milliseconds.
ULONGLONG Remaining() noexcept {
    const ULONGLONG passed = GetTickCount64() - lastReleaseAt;
    return passed < delay ? delay - passed : 0;
}

void StartTimer(PTP_TIMER timer, ULONGLONG milliseconds) noexcept {
    ULARGE_INTEGER due;
    due.QuadPart = 0 - milliseconds * 10000; // from now on, in units of 100 nanoseconds
    FILETIME time{due.LowPart, due.HighPart};
    SetThreadpoolTimer(timer, &time, 0, 0);
}

// The reference, if nobody holds the library any more. Else the timer is over, or has to go on for this long.
HMODULE TakeReference(ULONGLONG& wait) noexcept {
    const std::lock_guard lock(stateLock);
    wait = holders == 0 ? Remaining() : 0;
    if (wait != 0)
        return nullptr;
    isTimerOn = false;
    return holders == 0 ? std::exchange(held, nullptr) : nullptr;
}

bool IsStillHeld() noexcept {
    const std::lock_guard lock(stateLock);
    return holders != 0 || Remaining() != 0;
}

void CALLBACK LetGo(PTP_CALLBACK_INSTANCE instance, void*, PTP_TIMER timer) noexcept {
    const auto call = beforeItGoes.load(std::memory_order_acquire);
    if (call && !IsStillHeld())
        call();
    ULONGLONG wait = 0;
    const HMODULE reference = TakeReference(wait);
    if (wait != 0) {
        StartTimer(timer, wait);
        return;
    }
    CloseThreadpoolTimer(timer);
    if (reference)
        FreeLibraryWhenCallbackReturns(instance, reference);
}

// Without a timer the library stays.
void LetGoLater() noexcept {
    if (const PTP_TIMER timer = CreateThreadpoolTimer(LetGo, nullptr, nullptr)) {
        StartTimer(timer, delay);
        return;
    }
    const std::lock_guard lock(stateLock);
    isTimerOn = false;
}

} // namespace

clsLibrary PlatformOwnLibrary() noexcept {
    clsLibrary library;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<const wchar_t*>(reinterpret_cast<const void*>(&PlatformOwnLibrary)),
                       library.Receive());
    return library;
}

clsHeldLibrary::clsHeldLibrary() noexcept {
    if (HoldIfHeld())
        return;
    clsLibrary library = PlatformOwnLibrary();
    const std::lock_guard lock(stateLock); // left before a second reference goes
    ++holders;
    if (!held)
        held = library.Take();
}

clsHeldLibrary::~clsHeldLibrary() {
    {
        const std::lock_guard lock(stateLock);
        lastReleaseAt = GetTickCount64();
        if (--holders != 0 || isTimerOn || !held)
            return;
        isTimerOn = true;
    }
    const clsLastErrorKept lastError;
    LetGoLater();
}

void PlatformBeforeLibraryGoes(void (*call)() noexcept) noexcept {
    beforeItGoes.store(call, std::memory_order_release);
}

} // namespace tvut
