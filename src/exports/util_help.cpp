// Exports of help.
#include "exports/reason_guard.h"
#include "exports/result_call.h"
#include "platform/loader.h"
#include "runtime/handle_table.h"
#include "window/html_help.h"

#include <tvut22/window.h>

using namespace tvut;

namespace {

constexpr std::size_t mostOpen = 1024;

constinit clsHandleTable<clsHelp, HandleKind::help, mostOpen> helps;
constinit std::atomic<unsigned> openHelps{0};

std::uint32_t FromHelp(UtilHelp help) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(help));
}

UtilHelp Open(HWND owner, std::u16string_view file) {
    if (owner && !IsWindow(owner))
        throw clsException("the owner is no window", ERROR_INVALID_WINDOW_HANDLE);
    auto help = std::make_unique<clsHelp>(owner, file);
    const std::uint32_t handle = helps.Add(help);
    if (handle == 0)
        throw clsException("too many help files", ERROR_TOO_MANY_OPEN_FILES);
    ++openHelps;
    return reinterpret_cast<UtilHelp>(static_cast<std::uintptr_t>(handle));
}

// The use of the help file keeps it while a viewer runs messages, one of which may close it.
INT Show(UtilHelp help, const scHelpRequest& request) {
    return UtilpGuardWithReason(INT{UTIL_FAILED}, [&] {
        const auto use = helps.Use(FromHelp(help));
        if (!use)
            return UTIL_BAD_ARGUMENT;
        if (PlatformProcessEnds() || PlatformHoldsLoaderLock())
            return UTIL_IN_LOADER;
        return static_cast<INT>(use->Show(request));
    });
}

} // namespace

UtilHelp TVUT22_CALL UtilHelpOpen(HWND owner, const wchar_t* file) {
    return UtilpGuardWithReason(UtilHelp(nullptr), [&] {
        RequireArguments(file && *file ? file : nullptr);
        return Open(owner, UtilpView(file));
    });
}

INT TVUT22_CALL UtilHelpShowTopic(UtilHelp help, const wchar_t* topic) {
    return Show(help, {HelpPage::topic, UtilpView(topic)});
}

INT TVUT22_CALL UtilHelpShowContext(UtilHelp help, UINT id) {
    return Show(help, {HelpPage::context, {}, id});
}

INT TVUT22_CALL UtilHelpShowKeyword(UtilHelp help, const wchar_t* keyword) {
    return Show(help, {HelpPage::keyword, UtilpView(keyword)});
}

INT TVUT22_CALL UtilHelpClose(UtilHelp help) {
    if (!help || PlatformProcessEnds())
        return UTIL_OK;
    const clsLastErrorKept lastError;
    if (!helps.Close(FromHelp(help)))
        return UTIL_BAD_ARGUMENT;
    if (--openHelps == 0 && !PlatformHoldsLoaderLock())
        UtilpCloseHelpWindows();
    return UTIL_OK;
}
