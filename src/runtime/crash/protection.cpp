// Starting and ending protection. All that may ask the loader or the disk is done before the lock is taken,
// as callers within the loader may wait for that. Nobody waits under it for the prepared thread, either: to
// begin and to end that needs the loader.
#include "runtime/crash/protection.h"

#include "platform/bare_start.h"
#include "platform/critical_section.h"
#include "platform/host.h"
#include "platform/loader.h"
#include "platform/long_path.h"
#include "platform/owned.h"
#include "platform/thread_stack.h"
#include "platform/wide.h"
#include "runtime/crash/hand_over.h"
#include "runtime/crash/live_process.h"
#include "runtime/crash/report_folder.h"
#include "runtime/crash/system_facts.h"
#include "runtime/diagnostics.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <new>
#include <windows.h>

namespace tvut {

namespace {

static_assert(runtimeAbortCode == abortCode);

constexpr std::size_t roomSize = 1024 * 1024;
constexpr std::size_t usuallyKept = 10; // reports

constinit std::atomic<bool> isProtected{false};

// All that a crash needs is in one piece of the system's memory; its end, the room, is only touched at a
// crash.
struct scShelter {
    scPreparation preparation;
    clsHandOver handOver; // last to be used: its thread may release the shelter
};

void Release(scShelter* shelter) noexcept {
    VirtualFree(shelter, 0, MEM_RELEASE);
}
void ReleaseShelterOf(clsHandOver* handOver) noexcept {
    Release(
        reinterpret_cast<scShelter*>(reinterpret_cast<std::byte*>(handOver) - offsetof(scShelter, handOver)));
}
struct scRelease {
    void operator()(scShelter* shelter) const noexcept { Release(shelter); }
};
using Shelter = std::unique_ptr<scShelter, scRelease>;

// Guarded by the lock.
clsCriticalSection protectionLock;
unsigned starts = 0;
Shelter shelter;
clsReportFolder reportFolder;

// Read by threads that crash, which are counted while they use it.
constinit std::atomic<clsHandOver*> current{nullptr};
constinit std::atomic<unsigned> taking{0};

void Take(CrashKind kind, EXCEPTION_POINTERS* exception) noexcept {
    ++taking;
    if (clsHandOver* const handOver = current.load())
        handOver->Take(kind, exception);
    --taking;
}

Shelter Reserve() {
    constexpr std::size_t page = 4096, head = (sizeof(scShelter) + page - 1) / page * page;
    void* const memory = VirtualAlloc(nullptr, head + roomSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (!memory)
        throw std::bad_alloc();
    Shelter reserved(new (memory) scShelter);
    reserved->preparation.room = {static_cast<std::byte*>(memory) + head, roomSize};
    return reserved;
}

// "4.2.1.0"; empty for a host without a version.
clsFixedText<64> HostVersion() {
    clsLiveMemory memory(UtilpOwnProcess());
    scModule host;
    const auto address = reinterpret_cast<std::uintptr_t>(GetModuleHandleW(nullptr));
    clsFixedText<64> text;
    if (!UtilpReadModule(memory, static_cast<std::uint32_t>(address), host) || !host.hasVersion)
        return text;
    clsDiagnosticLine line;
    line.PutDecimal(host.fileVersionHigh >> 16, 1).Put(u".").PutDecimal(host.fileVersionHigh & 0xFFFF, 1);
    line.Put(u".").PutDecimal(host.fileVersionLow >> 16, 1).Put(u".");
    return text.Put(line.PutDecimal(host.fileVersionLow & 0xFFFF, 1).View());
}

// Null when the folder's path is too long.
Shelter Prepare(const scProtectionWish& wish, const std::wstring& folder) {
    Shelter reserved = Reserve();
    scPreparation& preparation = reserved->preparation;
    preparation.endsProcess = wish.endsProcess;
    preparation.isFull = wish.isFull;
    preparation.showsNotice = wish.showsNotice;
    preparation.after = wish.after;
    preparation.user = wish.user;
    constexpr std::size_t verbatim = 4; // "\\?\", which the system's own form has with a question mark more
    const scVerbatimPath path = PlatformVerbatimPath(folder);
    preparation.prefix.Put(u"\\??\\")
        .Put(FromWide(path.prefix).substr(std::min(verbatim, path.prefix.size())))
        .Put(FromWide(path.rest))
        .Put(u"\\")
        .Put(PlatformHostTag())
        .Put(u"-");
    preparation.product.Put(wish.product.empty() ? PlatformHostTag() : wish.product);
    preparation.version.Put(wish.version.empty() ? HostVersion().View() : wish.version);
    preparation.program.Put(PlatformHostFileName());
    UtilpNoteSystem(preparation);
    return preparation.prefix.IsFull() ? nullptr : std::move(reserved);
}

// What must not wait for the loader or the disk; under the lock.
UtilResult Begin(const clsLoadedRuntimes& runtimes, Shelter prepared, clsReportFolder folder) noexcept {
    if (!prepared->handOver.Open(prepared->preparation))
        return UtilResult::failed;
    shelter = std::move(prepared);
    reportFolder = std::move(folder);
    current = &shelter->handOver;
    PlatformInstallCrashHandlers(runtimes, Take);
    PlatformKeepStackForOverflow();
    isProtected = true;
    return UtilResult::ok;
}

// Handlers off, and no thread in the hand-over any more; under the lock.
Shelter Finish(const clsLoadedRuntimes& runtimes) noexcept {
    isProtected = false;
    PlatformRemoveCrashHandlers(runtimes);
    current = nullptr;
    while (taking.load() != 0)
        Sleep(1);
    return std::move(shelter);
}

} // namespace

UtilResult UtilpStartProtection(const scProtectionWish& wish, std::size_t& waiting) {
    if (!PlatformFindBareSystem())
        return UtilResult::notSupported;
    const clsLoadedRuntimes runtimes(RuntimesAsked::all);
    clsReportFolder folder(wish.folder);
    {
        const std::lock_guard lock(protectionLock);
        if (starts > 0) {
            waiting = reportFolder.Reports().size();
            ++starts;
            return UtilResult::ok;
        }
    }
    if (!folder.Make())
        return UtilResult::noAccess;
    Shelter prepared = Prepare(wish, folder.Path());
    if (!prepared)
        return UtilResult::badArgument;
    folder.Keep(wish.keep == 0 ? usuallyKept : wish.keep);
    waiting = folder.Reports().size();
    std::unique_lock lock(protectionLock);
    if (starts == 0) // else another thread was faster
        if (const UtilResult result = Begin(runtimes, std::move(prepared), std::move(folder));
            result != UtilResult::ok)
            return result;
    ++starts;
    const clsHandle ready(shelter->handOver.Ready());
    lock.unlock();
    if (ready && !PlatformHoldsLoaderLock()) // which lets no thread begin
        WaitForSingleObject(ready.Get(), INFINITE);
    return UtilResult::ok;
}

UtilResult UtilpEndProtection() noexcept {
    const clsLoadedRuntimes runtimes(RuntimesAsked::withHandlers);
    Shelter left;
    {
        const std::lock_guard lock(protectionLock);
        if (starts == 0)
            return UtilResult::notFound;
        if (--starts == 0)
            left = Finish(runtimes);
    }
    if (left)
        left.release()->handOver.Dismiss(ReleaseShelterOf);
    return UtilResult::ok;
}

void UtilpUnloadProtection() noexcept {
    const clsLoadedRuntimes runtimes(RuntimesAsked::withHandlers);
    const std::lock_guard lock(protectionLock);
    if (starts == 0)
        return;
    starts = 0;
    Finish(runtimes)->handOver.Stop();
}

std::wstring UtilpReportFolder() {
    const std::lock_guard lock(protectionLock);
    return starts > 0 ? reportFolder.Path() : std::wstring();
}

scProductName UtilpProductName() {
    const auto copy = [](std::u16string_view name, std::u16string_view version) -> scProductName {
        return {std::u16string(name), std::u16string(version)};
    };
    {
        const std::lock_guard lock(protectionLock);
        if (starts > 0)
            return copy(shelter->preparation.product.View(), shelter->preparation.version.View());
    }
    return copy(PlatformHostTag(), HostVersion().View());
}

void UtilpProtectModule() noexcept {
    if (!isProtected.load(std::memory_order_relaxed))
        return;
    const clsLoadedRuntimes runtimes(RuntimesAsked::all);
    const std::lock_guard lock(protectionLock);
    if (starts > 0)
        PlatformInstallCrashHandlers(runtimes, Take);
}

void UtilpProtectThread() noexcept {
    if (isProtected.load(std::memory_order_relaxed))
        PlatformKeepStackForOverflow();
}

} // namespace tvut
