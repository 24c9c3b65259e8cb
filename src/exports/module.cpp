// The module start: what the library notes when it is loaded.
//
// It runs under the loader lock, so it only reads what is at hand: no DLL is loaded, nothing waited
// for. Registering the clipboard format is an entry in the system's table of names; it loads no driver. In a
// process that has no windows so far, the first use of the clipboard registers it.
//
// When the process ends, the system has killed all other threads wherever they were: any lock may be held
// for good, any memory be half written. So nothing is freed, closed or destroyed then, and the compiler's
// runtime, which would run the destructors of static objects and take locks of its own, is not entered.
#include "platform/clipboard.h"
#include "platform/exception_memory.h"
#include "platform/host.h"
#include "platform/loader.h"
#include "platform/runtime_entry.h"
#include "platform/wide.h"
#include "runtime/call_stack.h"
#include "runtime/crash/protection.h"
#include "runtime/global_lock.h"
#include "runtime/impersonation.h"
#include "runtime/output/debugger.h"
#include "runtime/output/writer.h"
#include "runtime/temp_files/temp_file_remover.h"
#include "text/hash.h"
#include "window/hooks.h"
#include "window/subclass.h"

#include <mutex>
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

int attachCount = 0; // guarded by the global lock

// Callers find the host by its name later on; a system in which that fails is reported at once.
void CheckHostRoundtrips() noexcept {
    const wchar_t* const fullName = tvut::ToWide(tvut::PlatformHostFileName());
    const wchar_t* const separator = wcsrchr(fullName, L'\\');
    if (!GetModuleHandleW(fullName))
        tvut::UtilpWriteToDebugger(u"WARNING: the roundtrip 'GetModuleHandle(GetModuleFileName(NULL))' "
                                   u"returns 0 and thus implies that "
                                   u"it does not work. DANGER! Crashes might follow!");
    if (!GetModuleHandleW(separator ? separator + 1 : fullName))
        tvut::UtilpWriteToDebugger(
            u"WARNING: the roundtrip 'GetModuleHandle(ExtractFileName(GetModuleFileName(NULL)))' returns 0 "
            u"and "
            u"thus implies that it does not work. DANGER! Crashes might follow!");
}

void ProcessAttaches() noexcept {
    const std::lock_guard lock(tvut::UtilpGlobalLock()); // and nothing else: no viewer is looked for
    ++attachCount;
    CheckHostRoundtrips();
}

// While the process ends, the lock may be one that a killed thread has left held.
void ProcessDetaches() noexcept {
    const std::unique_lock lock(tvut::UtilpGlobalLock(), std::try_to_lock);
    if (lock)
        --attachCount;
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* processEnds) {
    switch (reason) {
    case DLL_PROCESS_ATTACH:
        if (!tvut::PlatformExceptionsBegin())
            return FALSE;
        tvut::PlatformNoteHost();
        if (tvut::PlatformWindowsAreUp())
            tvut::PlatformProfileFormat();
        tvut::g_hashSeed = ProcessSeed();
        ProcessAttaches();
        break;
    case DLL_THREAD_ATTACH:
        tvut::UtilpProtectThread();
        break;
    case DLL_THREAD_DETACH:
        tvut::UtilpEndSubclassesOfThread();
        tvut::UtilpEndHooksOfThread();
        tvut::UtilpForgetImpersonations();
        tvut::PlatformThreadEnds();
        break;
    case DLL_PROCESS_DETACH:
        ProcessDetaches();
        if (!processEnds)
            tvut::UtilpUnloadProtection();
        tvut::UtilpEndTempFiles(processEnds != nullptr);
        tvut::UtilpDiagnosticWriter().End(processEnds != nullptr);
        if (!processEnds) {
            tvut::UtilpForgetCallStacks();
            tvut::UtilpForgetSubclassThreads();
            tvut::UtilpForgetHookThreads();
            tvut::PlatformExceptionsEnd();
        }
        break;
    default:
        break;
    }
    return TRUE;
}

// The library's entry point, in front of the runtime's.
extern "C" BOOL WINAPI TvutEntry(HINSTANCE module, DWORD reason, void* processEnds) {
    return reason == DLL_PROCESS_DETACH && processEnds
               ? DllMain(module, reason, processEnds)
               : tvut::PlatformRuntimeEntry(module, reason, processEnds);
}
