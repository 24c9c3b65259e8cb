// A hook is in up to three places: the table of handles, which any thread may ask; its thread's chain; and,
// for Ctrl+Break, the list for console events. Opening puts it into all of them or none. Closing marks it
// first, so that it is called by none of them any more, and takes it out where the thread is not within a
// call.
#include "window/hooks.h"

#include "platform/exception.h"
#include "runtime/handle_table.h"
#include "window/hooks_console.h"
#include "window/hooks_thread.h"

namespace tvut {

namespace {

constexpr std::size_t mostHooks = 1024;

using HookReference = std::shared_ptr<scHook>;
constinit clsHandleTable<HookReference, HandleKind::hook, mostHooks> hooks;

void Close(scHook& hook) noexcept {
    hooks.Close(hook.handle);
    hook.isClosed = true;
    if (hook.isForBreak)
        UtilpLeaveConsole(hook);
}

// What the calling thread has of hooks, if this one is its own. A thread that was killed leaves its number to
// others.
clsHookThread* ThreadOf(const scHook& hook) noexcept {
    return hook.thread == GetCurrentThreadId() ? clsHookThread::Find() : nullptr;
}

void GiveHandle(const HookReference& hook) {
    auto reference = std::make_unique<HookReference>(hook);
    hook->handle = hooks.Add(reference);
    if (hook->handle == 0)
        throw clsException("too many hooks", ERROR_NO_MORE_USER_HANDLES);
}

std::uint32_t Open(bool isForBreak, UtilCBTProc cbt, UtilBreakProc onBreak, UINT_PTR user) {
    clsHookThread& thread = clsHookThread::Need();
    HookReference hook;
    try {
        hook = std::make_shared<scHook>(GetCurrentThreadId(), isForBreak, cbt, onBreak, user);
        GiveHandle(hook);
        if (isForBreak)
            thread.Look(); // for the older ones
        thread.ChainOf(*hook).Add(hook);
        if (isForBreak)
            UtilpAwaitConsole(hook);
    } catch (...) {
        if (hook)
            Close(*hook);
        thread.Settle();
        throw;
    }
    return hook->handle;
}

} // namespace

std::uint32_t UtilpHookCBT(UtilCBTProc proc, UINT_PTR user) {
    return Open(false, proc, nullptr, user);
}

std::uint32_t UtilpHookCtrlBreak(UtilBreakProc proc, UINT_PTR user) {
    return Open(true, nullptr, proc, user);
}

INT UtilpBreakSeen(std::uint32_t handle) noexcept {
    const auto use = hooks.Use(handle);
    if (!use || !(*use)->isForBreak)
        return UTIL_BAD_ARGUMENT;
    scHook& hook = **use;
    if (clsHookThread* const thread = ThreadOf(hook))
        thread->Look();
    return hook.seen.load(std::memory_order_relaxed) == 0 ? 0
                                                          : hook.seen.exchange(0, std::memory_order_relaxed);
}

UtilResult UtilpCloseHook(std::uint32_t handle) noexcept {
    HookReference hook;
    if (const auto use = hooks.Use(handle))
        hook = *use;
    if (!hook)
        return UtilResult::badArgument;
    clsHookThread* const thread = ThreadOf(*hook);
    if (!thread)
        return UtilResult::wrongThread;
    Close(*hook);
    thread->Settle();
    return UtilResult::ok;
}

void UtilpEndHooksOfThread() noexcept {
    clsHookThread::End(Close);
}

void UtilpForgetHookThreads() noexcept {
    clsHookThread::FreeSlot();
}

} // namespace tvut
