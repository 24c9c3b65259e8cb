// Exports of subclasses and hooks.
//
// At the end of the process its other threads are gone, and what they held may be half written: nothing is
// taken off then that goes with the process.
#include "exports/reason_guard.h"
#include "exports/result_call.h"
#include "platform/loader.h"
#include "window/hooks.h"
#include "window/subclass.h"

#include <tvut22/window.h>

using namespace tvut;

namespace {

template <class Handle>
std::uint32_t FromHandle(Handle handle) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle));
}

// Makes something that has a handle; none at the end of the process.
template <class Handle, class Make>
Handle HandleOf(Make&& make) {
    return UtilpGuardWithReason(Handle(nullptr), [&] {
        if (PlatformProcessEnds())
            throw clsException("the process ends", ERROR_SHUTDOWN_IN_PROGRESS);
        const clsLastErrorKept lastError;
        return reinterpret_cast<Handle>(static_cast<std::uintptr_t>(make()));
    });
}

} // namespace

UtilSubclass TVUT22_CALL UtilWindowSubclass(HWND window, UtilWindowProc proc, UINT_PTR user) {
    return HandleOf<UtilSubclass>([=] {
        RequireArguments(proc);
        return UtilpSubclass(window, proc, user);
    });
}

LRESULT TVUT22_CALL UtilWindowCallNext(UtilSubclass subclass, HWND window, UINT message, WPARAM w, LPARAM l) {
    return UtilpCallNext(FromHandle(subclass), window, message, w, l);
}

INT TVUT22_CALL UtilWindowUnsubclass(UtilSubclass subclass) {
    if (!subclass || PlatformProcessEnds())
        return UTIL_OK;
    return UtilpResultOf([=] { return UtilpUnsubclass(FromHandle(subclass)); });
}

UtilHook TVUT22_CALL UtilHookCBT(UtilCBTProc proc, UINT_PTR user) {
    return HandleOf<UtilHook>([=] {
        RequireArguments(proc);
        return UtilpHookCBT(proc, user);
    });
}

UtilHook TVUT22_CALL UtilHookCtrlBreak(UtilBreakProc proc, UINT_PTR user) {
    return HandleOf<UtilHook>([=] { return UtilpHookCtrlBreak(proc, user); });
}

INT TVUT22_CALL UtilHookBreakSeen(UtilHook hook) {
    const clsLastErrorKept lastError;
    return UtilpBreakSeen(FromHandle(hook));
}

INT TVUT22_CALL UtilHookClose(UtilHook hook) {
    if (!hook || PlatformProcessEnds())
        return UTIL_OK;
    return UtilpResultOf([=] { return UtilpCloseHook(FromHandle(hook)); });
}
