// Exports of crash protection, stack traces and dumps.
#include "exports/result_call.h"
#include "platform/bare_start.h"
#include "platform/exception.h"
#include "platform/return_address.h"
#include "runtime/crash/notes.h"
#include "runtime/crash/process_dump.h"
#include "runtime/crash/protection.h"
#include "runtime/crash/stack_trace.h"
#include "runtime/diagnostics.h"
#include "runtime/system_result.h"

#include <tvut22/crash.h>

#include <type_traits>

using namespace tvut;

static_assert(sizeof(UtilProtection) == 32);
static_assert(std::is_same_v<UtilCrashHandler, decltype(scProtectionWish::after)>);

namespace {

constexpr UtilProtection noOptions{sizeof(UtilProtection), 0, nullptr, nullptr, nullptr, 0, nullptr, 0};

} // namespace

TVUT22_API INT TVUT22_CALL UtilExHandlerStartProtection(const UtilProtection* options) {
    const UtilProtection& given = options ? *options : noOptions;
    if (!UtilpIsWhole(&given) ||
        !UtilpOnly(given.flags, UTIL_PROTECT_END | UTIL_PROTECT_FULL | UTIL_PROTECT_NOTICE))
        return UTIL_BAD_ARGUMENT;
    std::size_t waiting = 0;
    const INT result = UtilpResultOf([&] {
        return UtilpStartProtection({.endsProcess = (given.flags & UTIL_PROTECT_END) != 0,
                                     .isFull = (given.flags & UTIL_PROTECT_FULL) != 0,
                                     .showsNotice = (given.flags & UTIL_PROTECT_NOTICE) != 0,
                                     .folder = UtilpView(given.folder),
                                     .product = UtilpView(given.product),
                                     .version = UtilpView(given.version),
                                     .keep = given.keep,
                                     .after = given.after,
                                     .user = given.user},
                                    waiting);
    });
    return result == UTIL_OK ? static_cast<INT>(waiting) : result;
}

TVUT22_API INT TVUT22_CALL UtilExHandlerEndProtection() {
    return UtilpResultOf([] { return UtilpEndProtection(); });
}

TVUT22_API INT TVUT22_CALL UtilExHandlerSetNote(const wchar_t* name, const wchar_t* value) {
    return UtilpResultOf([&] {
        return value ? UtilpNotes().Set(UtilpView(name), UtilpView(value))
                     : UtilpNotes().Remove(UtilpView(name));
    });
}

TVUT22_API INT TVUT22_CALL UtilDebugHelpGetStackTrace(UINT thread, const CONTEXT* context, UINT skip,
                                                      BSTR* result) {
    const void* const caller = TVUT_RETURN_ADDRESS();
    return UtilpResultOf([&] {
        const bool isCaller = thread == 0 || thread == GetCurrentThreadId();
        scTrace trace;
        if (context && thread != 0)
            return UtilResult::badArgument;
        if (!PlatformFindBareSystem())
            return UtilResult::notSupported;
        if (context)
            UtilpTraceContext(*context, trace);
        else if (isCaller)
            UtilpTraceCaller(caller, trace);
        else if (const UtilResult traced = UtilpTraceThread(thread, trace); traced != UtilResult::ok)
            return traced;
        trace.Skip(skip);
        return result ? UtilpGive({{result, UtilpTraceText(trace)}}) : UtilResult::ok;
    });
}

TVUT22_API INT TVUT22_CALL UtilStackTrace(const wchar_t* title, UINT skip, UINT frames) {
    constexpr UINT usual = 40;
    if (!UtilpDiagnosticsOn())
        return 0;
    const clsLastErrorKept lastError;
    scTrace trace;
    UtilpTraceCaller(TVUT_RETURN_ADDRESS(), trace);
    trace.Skip(skip);
    return static_cast<INT>(UtilpWriteTrace(UtilpView(title), trace, frames == 0 ? usual : frames));
}

TVUT22_API INT TVUT22_CALL UtilDebugHelpWriteMiniDump(const wchar_t* file, UINT flags, UINT process,
                                                      UINT thread, EXCEPTION_POINTERS* exception) {
    CONTEXT caller;
    RtlCaptureContext(&caller);
    if (!file || !*file || !UtilpOnly(flags, UTIL_DUMP_FULL))
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] {
        try {
            return UtilpWriteProcessDump({.file = FromWide(file),
                                          .isFull = (flags & UTIL_DUMP_FULL) != 0,
                                          .process = process,
                                          .thread = thread,
                                          .exception = exception},
                                         caller);
        } catch (const clsException& error) {
            return UtilpResultOfError(error.Reason());
        }
    });
}
