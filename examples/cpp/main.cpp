// A program's settings: read them with defaults, change them, save them in one step.
#include <tvut22/prof.h>

#include <cstdio>

int main() {
    const ProfJob settings = ProfJobOpenW(L"settings.prf");
    if (ProfGetError(settings) == PROF_LOAD_FAILED) {
        std::puts("settings.prf is damaged; it stays as it is");
        return 1;
    }
    INT starts = 0;
    ProfGetIntW(settings, 0, L"Statistics/Starts", &starts, 0); // 0 when there is no such item yet
    ProfSetIntW(settings, 0, L"Statistics/Starts", starts + 1); // makes the list, too

    const RECT centred = {320, 180, 1600, 900};
    RECT window = {};
    ProfGetRectW(settings, 0, L"Window/Position", &window, &centred);
    const RECT moved = {window.left + 10, window.top, window.right + 10, window.bottom};
    ProfSetRectW(settings, 0, L"Window/Position", &moved);

    const INT saved = ProfSaveW(settings, nullptr, PROF_FORM_TEXT); // the old file or the new one, never half
    ProfJobClose(settings);
    std::printf("start %d, window at %ld,%ld: %s\n", starts + 1, moved.left, moved.top,
                saved == PROF_OK ? "saved" : "not saved");
    return saved == PROF_OK ? 0 : 1;
}
