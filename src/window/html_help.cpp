// What a file's ending calls for is decided by help_target, which asks nobody; here it is done. The viewer
// that is registered comes before the one in the system's folder. A viewer once found is kept, and two
// threads that look for it at once find the same one, so that no lock is held while the loader works.
#include "window/html_help.h"

#include "platform/exception.h"
#include "platform/long_path.h"
#include "platform/owned.h"
#include "platform/registry.h"
#include "platform/system_function.h"
#include "platform/wide.h"
#include "window/help_copy.h"

#include <atomic>
#include <htmlhelp.h>
#include <shellapi.h>

namespace tvut {

namespace {

using HtmlHelpFunction = HWND WINAPI(HWND, LPCWSTR, UINT, DWORD_PTR);

constinit clsSystemFunction<HtmlHelpFunction> systemViewer{L"hhctrl.ocx", "HtmlHelpW"};
constinit clsSystemFunction<BOOL WINAPI(SHELLEXECUTEINFOW*)> shellExecute{L"shell32.dll", "ShellExecuteExW"};

constinit std::atomic<HtmlHelpFunction*> registeredViewer{nullptr};
constinit std::atomic<bool> hasShown{false};

constexpr const wchar_t* viewerKey = L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";

// Only a full path: anything else would be looked for beside the host program, too.
bool IsFullPath(const std::wstring& path) {
    return path.size() > 2 && (path.compare(1, 2, L":\\") == 0 || path.starts_with(L"\\\\"));
}

HtmlHelpFunction* LoadRegisteredViewer() {
    const std::wstring path = PlatformReadText(HKEY_CLASSES_ROOT, viewerKey, nullptr);
    if (!IsFullPath(path))
        return nullptr;
    const HMODULE library = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    return library ? reinterpret_cast<HtmlHelpFunction*>(
                         reinterpret_cast<void*>(GetProcAddress(library, "HtmlHelpW")))
                   : nullptr;
}

// Null when the system has no viewer. Threads that load it at once get the same.
HtmlHelpFunction* Viewer() {
    HtmlHelpFunction* viewer = registeredViewer.load(std::memory_order_acquire);
    if (!viewer) {
        viewer = LoadRegisteredViewer();
        if (!viewer)
            return systemViewer.Get();
        registeredViewer.store(viewer, std::memory_order_release);
    }
    return viewer;
}

HtmlHelpFunction* LoadedViewer() noexcept {
    HtmlHelpFunction* const viewer = registeredViewer.load(std::memory_order_acquire);
    return viewer ? viewer : systemViewer.Get();
}

// What the viewer gets for a target, beside its text.
UINT CommandOf(HelpCall call) {
    switch (call) {
    case HelpCall::displayIndex:
        return HH_DISPLAY_INDEX;
    case HelpCall::helpContext:
        return HH_HELP_CONTEXT;
    case HelpCall::keywordLookup:
        return HH_KEYWORD_LOOKUP;
    default:
        return HH_DISPLAY_TOPIC;
    }
}

UtilResult ShowCompiled(HWND owner, const scHelpTarget& target, const scHelpRequest& request) {
    auto* const viewer = Viewer();
    if (!viewer)
        return UtilResult::notSupported;
    const std::wstring keyword(ToWide(request.text.data()), request.text.size());
    HH_AKLINK lookup{};
    lookup.cbStruct = sizeof lookup;
    lookup.pszKeywords = keyword.c_str();
    lookup.fIndexOnFail = TRUE;
    DWORD_PTR data = 0;
    if (target.call == HelpCall::helpContext)
        data = request.id;
    else if (target.call == HelpCall::keywordLookup)
        data = reinterpret_cast<DWORD_PTR>(&lookup);
    const HWND shown =
        viewer(IsWindow(owner) ? owner : nullptr, ToWide(target.text.c_str()), CommandOf(target.call), data);
    if (!shown)
        return UtilResult::notFound;
    hasShown = true;
    return UtilResult::ok;
}

UtilResult ResultOf(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return UtilResult::notFound;
    case ERROR_NO_ASSOCIATION:
        return UtilResult::notSupported;
    default:
        throw clsException("the shell cannot open it", error);
    }
}

// Without asking or telling the user anything.
UtilResult OpenByShell(HWND owner, const std::u16string& what) {
    auto* const execute = shellExecute.Get();
    if (!execute)
        return UtilResult::notSupported;
    SHELLEXECUTEINFOW call{};
    call.cbSize = sizeof call;
    call.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    call.hwnd = IsWindow(owner) ? owner : nullptr;
    call.lpFile = ToWide(what.c_str());
    call.nShow = SW_SHOWNORMAL;
    return execute(&call) ? UtilResult::ok : ResultOf(GetLastError());
}

bool IsThere(const std::wstring& file) {
    const DWORD attributes = GetFileAttributesW(PlatformLongPath(file).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::wstring FullFile(std::u16string_view file) {
    const std::wstring_view wide(ToWide(file.data()), file.size());
    std::wstring full = UtilpIsWebAddress(file) ? std::wstring() : PlatformFullPath(wide);
    return full.empty() ? std::wstring(wide) : PlatformPlainPath(std::move(full));
}

} // namespace

clsHelp::clsHelp(HWND owner, std::u16string_view file) : owner_(owner), file_(FullFile(file)) {}

UtilResult clsHelp::Show(const scHelpRequest& request) const {
    const clsLastErrorKept lastError;
    const HelpCall call = UtilpHelpTarget(FromWide(file_), request).call;
    if (call == HelpCall::none)
        return UtilResult::notSupported;
    if (!UtilpIsWebAddress(FromWide(file_)) && !IsThere(file_))
        return UtilResult::notFound;
    if (call == HelpCall::openAddress || call == HelpCall::openFile)
        return OpenByShell(owner_, UtilpHelpTarget(FromWide(file_), request).text);
    const std::wstring shown = UtilpHelpFileToShow(file_);
    return ShowCompiled(owner_, UtilpHelpTarget(FromWide(shown), request), request);
}

void UtilpCloseHelpWindows() noexcept {
    if (hasShown.exchange(false))
        LoadedViewer()(nullptr, nullptr, HH_CLOSE_ALL, 0);
}

} // namespace tvut
