#include "window/subclass.h"

#include "platform/exception.h"
#include "window/subclass_window.h"

namespace tvut {

namespace {

// The system might take a window of another thread, and would then call the procedure without any order.
void RequireOwnWindow(HWND window) {
    const DWORD thread = GetWindowThreadProcessId(window, nullptr);
    if (thread == 0)
        throw clsException("no window", ERROR_INVALID_WINDOW_HANDLE);
    if (thread != GetCurrentThreadId())
        throw clsException("a window of another thread", ERROR_INVALID_THREAD_ID);
}

} // namespace

std::uint32_t UtilpSubclass(HWND window, UtilWindowProc proc, UINT_PTR user) {
    RequireOwnWindow(window);
    clsSubclassThread& thread = clsSubclassThread::Need();
    clsSubclassedWindow& subclassed = thread.Window(window);
    try {
        return subclassed.Add(proc, user);
    } catch (...) {
        thread.Settle(subclassed);
        throw;
    }
}

LRESULT UtilpCallNext(std::uint32_t subclass, HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
    return clsSubclassCall::Find(subclass, window) ? UtilpPassOn(window, message, w, l) : 0;
}

UtilResult UtilpUnsubclass(std::uint32_t handle) noexcept {
    const std::shared_ptr<scSubclass> subclass = UtilpFindSubclass(handle);
    if (!subclass)
        return UtilpForgetGoneSubclass(handle) ? UtilResult::ok : UtilResult::badArgument;
    if (subclass->thread != GetCurrentThreadId())
        return UtilResult::wrongThread;
    UtilpCloseSubclass(handle);
    subclass->window.Remove(*subclass);
    return UtilResult::ok;
}

void UtilpEndSubclassesOfThread() noexcept {
    clsSubclassThread::End();
}

void UtilpForgetSubclassThreads() noexcept {
    clsSubclassThread::FreeSlot();
}

} // namespace tvut
