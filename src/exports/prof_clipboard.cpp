// Exports of the profile store: profiles on the clipboard.
#include "exports/prof_handles.h"
#include "platform/clipboard.h"

using namespace tvut;

ProfJob TVUT22_CALL ProfJobOpenClipboard(HWND owner) {
    return OpenWithReason([&] { return clsProfJob::OpenClipboard(owner); });
}

INT TVUT22_CALL ProfSaveToClipboard(ProfJob job, HWND owner, UINT flags) {
    if (!job)
        return PROF_OK;
    return UtilpGuardWithReason(PROF_SAVE_FAILED,
                                [&] { return FromHandle(job)->SaveToClipboard(owner, flags); });
}

BOOL TVUT22_CALL ProfIsClipboardDataAvailable(void) {
    return IsClipboardFormatAvailable(PlatformProfileFormat());
}
