// A program's settings: read with defaults, changed, saved in one step.
#include <cstdio>
#include <tvut22/prof.h>

int main() {
    const ProfJob settings = ProfJobOpenW(L"settings.prf"); // a missing file: an empty profile
    if (ProfGetError(settings) != PROF_OK && GetFileAttributesW(L"settings.prf") != INVALID_FILE_ATTRIBUTES)
        return 1; // locked or damaged: it stays as it is
    INT starts = 0;
    ProfGetIntW(settings, 0, L"Statistics/Starts", &starts, 0);
    ProfSetIntW(settings, 0, L"Statistics/Starts", starts + 1); // makes the list, too
    const RECT centred = {320, 180, 1600, 900};
    RECT window = {};
    ProfGetRectW(settings, 0, L"Window/Position", &window, &centred);
    const INT saved = ProfSaveW(settings, nullptr, PROF_FORM_TEXT); // the old file or the new one, never half
    ProfJobClose(settings);
    std::printf("start %d, window at %ld,%ld: %d\n", starts + 1, window.left, window.top, saved);
}
