// A library that aborts in its DllMain: when it is loaded, or while the process ends.
#include <cstdlib>
#include <cstring>
#include <windows.h>

namespace {

[[gnu::noinline]] void AbortWhen(const char* wanted) {
    char when[20] = "";
    GetEnvironmentVariableA("TVUT22_CRASH", when, sizeof when);
    if (std::strcmp(when, wanted) == 0)
        std::abort(); // crashes
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* processEnds) {
    if (reason == DLL_PROCESS_ATTACH)
        AbortWhen("abort");
    else if (reason == DLL_PROCESS_DETACH && processEnds)
        AbortWhen("end");
    return TRUE;
}
