// Impersonations are in one list, newest first, so that a thread's newest is the first that bears its number:
// only that one can end, and by no other thread. A variable of the thread would do the same, but hold the
// library in memory. Only a thread itself adds and removes what is its own, so an impersonation that it has
// found stays there without the lock.
//
// A thread that cannot be given its former token back would go on as somebody else: the process ends then.
#include "runtime/impersonation.h"

#include "platform/exception.h"
#include "platform/lock.h"
#include "platform/token.h"
#include "runtime/diagnostics.h"
#include "runtime/handle_table.h"

#include <mutex>

namespace tvut {

namespace {

constexpr std::size_t mostImpersonations = 4096;

struct scImpersonation {
    scThreadToken former;
    std::uint32_t handle = 0;
    DWORD thread = 0;
    scImpersonation* older = nullptr; // of any thread
};

constinit clsHandleTable<scImpersonation, HandleKind::impersonation, mostImpersonations> impersonations;
constinit clsLock listLock;
constinit std::atomic<scImpersonation*> newest{nullptr};

void Link(scImpersonation& impersonation) noexcept {
    const std::lock_guard lock(listLock);
    impersonation.older = newest;
    newest = &impersonation;
}

scImpersonation* NewestOfThread() noexcept {
    if (!newest) // the thread has none: its own would be seen
        return nullptr;
    const std::lock_guard lock(listLock);
    scImpersonation* found = newest;
    while (found && found->thread != GetCurrentThreadId())
        found = found->older;
    return found;
}

void Unlink(const scImpersonation& impersonation) noexcept {
    const std::lock_guard lock(listLock);
    if (newest == &impersonation) {
        newest = impersonation.older;
        return;
    }
    scImpersonation* younger = newest;
    while (younger->older != &impersonation)
        younger = younger->older;
    younger->older = impersonation.older;
}

// Its handle is invalid then, and the former token closed.
void Remove(const scImpersonation& impersonation) noexcept {
    Unlink(impersonation);
    impersonations.Close(impersonation.handle);
}

[[noreturn]] void EndProcess(DWORD error) noexcept {
    clsDiagnosticLine line;
    line.Put(u"ERR: UtilImpersonateEnd(): the thread cannot be reverted (").PutDecimal(error, 1).Put(u")");
    line.Write();
    PlatformEndUnreverted();
}

void Revert(const scImpersonation& impersonation) noexcept {
    if (const DWORD error = PlatformSetThreadToken(impersonation.former))
        EndProcess(error);
}

// The process's own token is opened as the process: whom the thread acts for may not be allowed to.
DWORD Take(HANDLE token, const scThreadToken& former) noexcept {
    if (!token && former.handle)
        if (const DWORD error = PlatformSetThreadToken({}))
            return error;
    scThreadToken copy;
    const DWORD error = PlatformCopyToken(token, copy);
    return error ? error : PlatformSetThreadToken(copy);
}

} // namespace

std::uint32_t UtilpImpersonate(HANDLE token) {
    auto made = std::make_unique<scImpersonation>();
    scImpersonation& impersonation = *made;
    impersonation.thread = GetCurrentThreadId();
    if (const DWORD error = PlatformReadThreadToken(impersonation.former))
        throw clsException("the thread's token cannot be read", error);
    const std::uint32_t handle = impersonations.Add(made);
    if (handle == 0)
        throw clsException("too many impersonations", ERROR_TOO_MANY_OPEN_FILES);
    impersonation.handle = handle;
    Link(impersonation);
    if (const DWORD error = Take(token, impersonation.former)) {
        Revert(impersonation);
        Remove(impersonation);
        throw clsException("the token is not in effect", error);
    }
    return handle;
}

bool UtilpEndImpersonation(std::uint32_t handle) noexcept {
    const scImpersonation* const impersonation = NewestOfThread();
    if (!impersonation || impersonation->handle != handle)
        return false;
    Revert(*impersonation);
    Remove(*impersonation);
    return true;
}

void UtilpForgetImpersonations() noexcept {
    while (const scImpersonation* const impersonation = NewestOfThread())
        Remove(*impersonation);
}

} // namespace tvut
