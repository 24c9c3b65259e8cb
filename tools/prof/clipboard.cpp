// prof copy and prof paste: a profile to the clipboard and from it.
#include "commands.h"
#include "profile.h"
#include "replacing.h"

#include <memory>
#include <type_traits>

namespace tool::prof {

namespace {

struct scDestroyOwner {
    void operator()(HWND window) const { DestroyWindow(window); }
};
using Owner = std::unique_ptr<std::remove_pointer_t<HWND>, scDestroyOwner>;

// The clipboard belongs to a window; one that is never shown will do.
Owner MakeOwner() {
    return Owner{
        CreateWindowExW(0, L"Message", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)};
}

// The library adds to what is there; what was copied before is to be gone.
bool EmptyForOwner(HWND owner) {
    if (!OpenClipboard(owner))
        return false;
    const bool emptied = EmptyClipboard() != FALSE;
    CloseClipboard();
    return emptied;
}

} // namespace

ExitCode RunCopy(const scArguments& arguments) {
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    const Owner owner = MakeOwner();
    if (!EmptyForOwner(owner.get()) ||
        ProfSaveToClipboard(profile.Job(), owner.get(), PROF_FORM_TEXT) != PROF_OK)
        throw scFailure{ExitCode::cannotSave, "clipboard", "in use by another program, or no memory for it"};
    return ExitCode::ok;
}

ExitCode RunPaste(const scArguments& arguments) {
    const clsProfile profile = clsProfile::FromClipboard();
    if (arguments.output != standardStream)
        RequireOverwritable(arguments.output);
    profile.Save(arguments.output, PROF_FORM_TEXT | (arguments.compress ? PROF_SAVE_COMPRESSED : 0u));
    return ExitCode::ok;
}

} // namespace tool::prof
