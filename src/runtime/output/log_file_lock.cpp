// The word is taken by one exchange. Who finds it taken looks again for about as long as a line takes to
// write, then lets other threads run, and after 50 ms asks whether the owner still lives: a dead
// owner's id is replaced by none in one exchange, which fails if somebody else was faster. Process ids are
// used again, so a dead owner may be taken for a living one; the wait ends after a second in that case,
// too.
#include "runtime/output/log_file_lock.h"

#include <array>
#include <cwchar>

namespace tvut {

namespace {

constexpr int spins = 200;            // about as long as a line's write
constexpr DWORD ownerCheckAfter = 50; // milliseconds
constexpr DWORD longestWait = 1000;   // milliseconds

bool IsDead(LONG process) noexcept {
    const clsHandle owner(OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process)));
    return owner ? WaitForSingleObject(owner.Get(), 0) == WAIT_OBJECT_0
                 : GetLastError() == ERROR_INVALID_PARAMETER; // no such process
}

} // namespace

void clsLogFileLock::Open(HANDLE file) noexcept {
    BY_HANDLE_FILE_INFORMATION identity;
    if (!GetFileInformationByHandle(file, &identity))
        return;
    std::array<wchar_t, 64> name{};
    _snwprintf(name.data(), name.size() - 1, L"QmzLOGPANLogFile_%08x_%08x%08x", identity.dwVolumeSerialNumber,
               identity.nFileIndexHigh, identity.nFileIndexLow);
    mapping_ = clsMapping::OpenOrCreate(name.data(), sizeof(LONG));
    self_ = static_cast<LONG>(GetCurrentProcessId());
}

bool clsLogFileLock::TryLock() noexcept {
    held_ = InterlockedCompareExchange(mapping_.As<volatile LONG>(), self_, 0) == 0;
    return held_;
}

void clsLogFileLock::lock() noexcept {
    if (!mapping_.HasView() || TryLock())
        return;
    for (int i = 0; i < spins; ++i) {
        YieldProcessor();
        if (TryLock())
            return;
    }
    const DWORD start = GetTickCount();
    for (DWORD waited = 0; waited < longestWait; waited = GetTickCount() - start) {
        SwitchToThread();
        if (TryLock())
            return;
        if (waited >= ownerCheckAfter)
            BreakDeadLock();
    }
    mapping_ = {}; // whoever has it keeps it: better a torn line than none
}

void clsLogFileLock::BreakDeadLock() noexcept {
    volatile LONG* const word = mapping_.As<volatile LONG>();
    const LONG owner = *word;
    if (owner != 0 && IsDead(owner))
        InterlockedCompareExchange(word, 0, owner);
}

void clsLogFileLock::unlock() noexcept {
    if (held_)
        InterlockedCompareExchange(mapping_.As<volatile LONG>(), 0, self_);
    held_ = false;
}

} // namespace tvut
