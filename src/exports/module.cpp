// The module start: what the library notes when it is loaded.
//
// It runs under the loader lock, so it only reads what is at hand: no DLL is loaded, nothing waited
// for.
#include "platform/exception_memory.h"
#include "platform/host.h"
#include "text/hash.h"

#include <windows.h>

namespace {

// Differs from process to process, so that a file cannot be made whose names all collide.
std::uint32_t ProcessSeed() {
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    std::uint32_t seed = counter.LowPart ^ GetCurrentProcessId() * 0x9E3779B1u;
    seed ^= time.dwLowDateTime * 0x85EBCA6Bu;
    return seed ^ static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&counter)) * 0xC2B2AE35u;
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* processEnds) {
    switch (reason) {
    case DLL_PROCESS_ATTACH:
        if (!tvut::PlatformExceptionsBegin())
            return FALSE;
        tvut::PlatformNoteHost();
        tvut::g_hashSeed = ProcessSeed();
        break;
    case DLL_THREAD_DETACH:
        tvut::PlatformThreadEnds();
        break;
    case DLL_PROCESS_DETACH:
        if (!processEnds)
            tvut::PlatformExceptionsEnd();
        break;
    default:
        break;
    }
    return TRUE;
}
