// A library that uses pools in its DllMain: when it is loaded, unloaded, and when the process ends.
#include <tvut22/thread_pool.h>

#include <cstdlib>

namespace {

int discards = 0, runs = 0;

void TVUT22_CALL Count(UINT reason, UINT_PTR, const volatile LONG*) {
    ++(reason == UTIL_POOL_DISCARDED ? discards : runs);
}

// Ends the process when something is not as it should be: nobody could be told otherwise.
void Require(bool holds, UINT exitCode) {
    if (!holds)
        TerminateProcess(GetCurrentProcess(), exitCode);
}

// The program's own pool, one of whose jobs waits for the loader.
void UseBusyPool() {
    wchar_t number[20];
    if (GetEnvironmentVariableW(L"TVUT22_BUSY_POOL", number, 20) == 0)
        return;
    const auto pool = reinterpret_cast<UtilThreadPool>(wcstoul(number, nullptr, 10));
    Require(UtilThreadPoolFinalize(pool, 0) == UTIL_IN_LOADER, 101);
    Require(UtilThreadPoolFinalize(pool, UTIL_POOL_FOREVER) == UTIL_IN_LOADER, 102);
    Require(UtilThreadPoolClose(pool) == UTIL_IN_LOADER, 103);
    Require(UtilThreadPoolClose(pool) == UTIL_BAD_ARGUMENT, 104);
    SetEnvironmentVariableW(L"TVUT22_BUSY_POOL", nullptr);
}

// No thread can begin before the loader is free.
void UseOwnPool() {
    discards = runs = 0;
    const UtilThreadPool pool = UtilThreadPoolOpen(L"in the loader", 2, 0);
    Require(UtilThreadPoolFinalize(pool, UTIL_POOL_FOREVER) == UTIL_OK, 105);
    for (int i = 0; i < 20; ++i)
        Require(UtilThreadPoolAdd(pool, Count, 0) == UTIL_OK, 106);
    Require(UtilThreadPoolFinalize(pool, UTIL_POOL_FOREVER) == UTIL_IN_LOADER, 107);
    Require(UtilThreadPoolClose(pool) == UTIL_JOBS_LEFT, 108);
    Require(discards == 20 && runs == 0, 109);
}

void UseNothing(UtilThreadPool pool) {
    Require(!UtilThreadPoolOpen(nullptr, 1, 0), 110);
    Require(UtilThreadPoolAdd(pool, Count, 0) == UTIL_CANCELLED, 111);
    Require(UtilThreadPoolAbort(pool) == UTIL_OK, 112);
    Require(UtilThreadPoolFinalize(pool, UTIL_POOL_FOREVER) == UTIL_OK, 113);
    Require(UtilThreadPoolClose(pool) == UTIL_OK, 114);
}

UtilThreadPool leftOpen = nullptr;

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* processEnds) {
    if (reason == DLL_PROCESS_ATTACH) {
        UseBusyPool();
        UseOwnPool();
        leftOpen = UtilThreadPoolOpen(L"left open", 2, 0);
    } else if (reason == DLL_PROCESS_DETACH && processEnds) {
        UseNothing(leftOpen);
    } else if (reason == DLL_PROCESS_DETACH) {
        UseOwnPool();
        UtilThreadPoolClose(leftOpen);
    }
    return TRUE;
}
