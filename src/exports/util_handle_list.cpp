// Export of the list of handles.
#include "exports/result_call.h"
#include "platform/return_address.h"
#include "window/handle_kinds.h"
#include "window/process_handles.h"

#include <tvut22/window.h>

using namespace tvut;

static_assert(UTIL_HANDLE_GDI == handleKind::gdi && UTIL_HANDLE_ICON == handleKind::icon &&
              UTIL_HANDLE_MENU == handleKind::menu && UTIL_HANDLE_WINDOW == handleKind::window &&
              UTIL_HANDLE_KERNEL == handleKind::kernel);

namespace {

struct scCall {
    std::uint32_t handle;
    std::uint8_t kind;
    const wchar_t* label;
    const void* returnsTo;
};

INT Add(const scCall& call) {
    if (call.handle == 0 || call.kind == 0)
        return UTIL_BAD_ARGUMENT;
    return static_cast<INT>(UtilpAddHandle(call.handle, call.kind, UtilpView(call.label), call.returnsTo));
}

INT Remove(const scCall& call) {
    return static_cast<INT>(UtilpRemoveHandle(call.handle, call.kind, call.returnsTo));
}

INT Count(const scCall& call) {
    return static_cast<INT>(UtilpCountHandles(call.kind));
}

INT Check(const scCall& call) {
    return static_cast<INT>(UtilpCheckHandles(call.kind));
}

INT Mark(const scCall&) {
    return static_cast<INT>(UtilpMarkHandles());
}

INT Report(const scCall& call) {
    if (!UtilpIsHandleMark(call.handle))
        return UTIL_BAD_ARGUMENT;
    return static_cast<INT>(UtilpReportHandles(call.kind, call.handle));
}

using Command = INT (*)(const scCall&);
constexpr Command commands[] = {nullptr, Add, Remove, Count, Check, Mark, Report};
static_assert(UTIL_HANDLES_ADD == 1 && UTIL_HANDLES_REMOVE == 2 && UTIL_HANDLES_COUNT == 3 &&
              UTIL_HANDLES_CHECK == 4 && UTIL_HANDLES_MARK == 5 && UTIL_HANDLES_REPORT == 6);

} // namespace

INT TVUT22_CALL UtilHandleListMgr(UINT command, HANDLE handle, UINT kind, const wchar_t* label) {
    const void* const returnsTo = TVUT_RETURN_ADDRESS();
    const bool ignoresKind = command == UTIL_HANDLES_MARK;
    if (command == 0 || command >= std::size(commands) || (kind > handleKind::last && !ignoresKind))
        return UTIL_BAD_ARGUMENT;
    const clsLastErrorKept lastError;
    const scCall call{static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle)),
                      static_cast<std::uint8_t>(kind), label, returnsTo};
    return UtilpGuard(INT{UTIL_FAILED}, [&] { return commands[command](call); });
}
