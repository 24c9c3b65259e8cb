// The library when it is loaded and unloaded, and when the process around it ends.
#include "support/beside_test.h"
#include "support/copy.h"
#include "support/import_hook.h"
#include "support/roles.h"

#include <tvut22/prof.h>
#include <tvut22/util.h>

#include <atomic>
#include <thread>

namespace testing_prof {
namespace {

// Throws and catches within the library.
INT FailingCall(decltype(ProfGetVariantFromContents) call = ProfGetVariantFromContents) {
    VARIANT variant;
    return call(L"no variant", &variant);
}

// ---- The end of the process ------------------------------------------------------------------------

// Child: ends while other threads are throwing, which ExitProcess kills wherever they are.
void EndWhileThrowing() {
    static std::atomic<int> calls[2];
    for (auto& count : calls)
        std::thread([&] {
            for (;; ++count)
                FailingCall();
        }).detach();
    while (calls[0] < 50 || calls[1] < 50)
        SwitchToThread();
    ExitProcess(17);
}

TEST(ProcessEnd, WaitsForNoKilledThread) {
    for (int round = 0; round < 30; ++round) {
        const clsChild children[] = {clsChild(L"throwing"), clsChild(L"throwing")};
        for (const clsChild& child : children)
            ASSERT_EQ(child.ExitCodeUnlessItHangs(), 17u) << "round " << round;
    }
}

// Child: ends with a log file, a job and a profile open; whatever the library does about them then is an
// error, because a killed thread may have left its memory and its locks in any state.
std::atomic<bool> ending{false};
BOOL WINAPI NoteClose(HANDLE) {
    if (ending)
        TerminateProcess(GetCurrentProcess(), 2);
    return TRUE;
}
void NoteFree(void*) {
    if (ending)
        TerminateProcess(GetCurrentProcess(), 3);
}
void EndWithAllOpen() {
    UtilJobOpen(L"open", 0);
    UtilHeapCreate(UtilJobOpen(L"heaps", 0), L"H", UTIL_HEAP_DEBUG);
    ProfSetIntW(ProfJobOpenW(L"no file"), 0, L"a/b", 1);
    UtilDebug(L"a line");
    FailingCall();
    static const clsImportHook hooks[] = {{"CloseHandle", reinterpret_cast<void*>(NoteClose)},
                                          {"UnmapViewOfFile", reinterpret_cast<void*>(NoteClose)},
                                          {"free", reinterpret_cast<void*>(NoteFree)}};
    ending = true;
    ExitProcess(17);
}

TEST(ProcessEnd, LeavesEverythingToTheSystem) {
    const clsTempFolder folder;
    SetEnvironmentVariableW(L"TVUT22_LOG", (folder / L"lines.log").c_str());
    EXPECT_EQ(clsChild(L"open").ExitCode(), 17u);
    SetEnvironmentVariableW(L"TVUT22_LOG", nullptr);
}

// ---- Loading and unloading -------------------------------------------------------------------------

std::size_t FreeTlsIndexes() {
    std::vector<DWORD> taken;
    for (DWORD index = TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = TlsAlloc())
        taken.push_back(index);
    for (const DWORD index : taken)
        TlsFree(index);
    return taken.size();
}

std::size_t BusyBlocks() {
    std::size_t busy = 0;
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(GetProcessHeap());
    while (HeapWalk(GetProcessHeap(), &entry))
        busy += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
    HeapUnlock(GetProcessHeap());
    return busy;
}

// Something of each kind that the library keeps for later.
void Use(const clsCopy& copy) {
    std::thread([&] {
        EXPECT_EQ(FailingCall(copy.Find(ProfGetVariantFromContents, "ProfGetVariantFromContents")),
                  PROF_NOT_PARSED);
    }).join();
    const UtilJob job = copy.Find(UtilJobOpen, "UtilJobOpen")(L"job", 0);
    const UtilHeap heap = copy.Find(UtilHeapCreate, "UtilHeapCreate")(job, L"H", UTIL_HEAP_DEBUG);
    void* const object = copy.Find(UtilHeapObjectAlloc, "UtilHeapObjectAlloc")(heap, 1, 0);
    EXPECT_EQ(copy.Find(UtilHeapObjectFree, "UtilHeapObjectFree")(heap, object), UTIL_OK);
    EXPECT_EQ(copy.Find(UtilJobClose, "UtilJobClose")(job), UTIL_HEAPS_LEFT);
}

#ifdef NDEBUG
constexpr int cycleCount = 1200; // a process has 1,088 indexes
#else
constexpr int cycleCount = 60; // a library with debug information takes its time to load
#endif

TEST(Loading, LeavesNothingBehind) {
    const clsTempFolder folder;
    const std::wstring path = folder / L"copy.dll";
    clsCopy::MakeFile(path);
    std::size_t indexes = 0, blocks = 0;
    for (int cycle = 0; cycle < cycleCount; ++cycle) {
        clsCopy copy(path);
        ASSERT_TRUE(copy) << "cycle " << cycle;
        Use(copy);
        copy.Unload();
        if (cycle == 1)
            indexes = FreeTlsIndexes(), blocks = BusyBlocks();
    }
    EXPECT_EQ(FreeTlsIndexes(), indexes);
    EXPECT_LT(BusyBlocks(), blocks + cycleCount / 2) << "what threads and the loader keep";
}

// Programs of the same compiler may have its runtime as a DLL; the library's own must not mix with it.
TEST(Loading, WorksBesideTheCompilersRuntime) {
    const auto file = BesideTest("../compiler_runtime/libgcc_s_dw2-1.dll").make_preferred();
    const HMODULE runtime = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    ASSERT_TRUE(runtime) << GetLastError();
    const clsTempFolder folder;
    clsCopy::MakeFile(folder / L"copy.dll");
    const clsCopy copy(folder / L"copy.dll");
    EXPECT_EQ(FailingCall(copy.Find(ProfGetVariantFromContents, "ProfGetVariantFromContents")),
              PROF_NOT_PARSED);
    FreeLibrary(runtime);
}

// Child: hooks a function of a library that nobody has called yet, as programs that watch calls do, and
// passes its calls on to what was there before.
int watchedCalls = 0;
decltype(&VariantInit) afterHook;
void WINAPI WatchCall(VARIANT* variant) {
    ++watchedCalls;
    afterHook(variant);
}
void CallThroughHook() {
    if (IsBound("VariantInit"))
        ExitProcess(2);
    const void* const before = *ImportSlot("VariantInit");
    std::memcpy(&afterHook, &before, sizeof before);
    const clsImportHook hook("VariantInit", WatchCall);
    for (int call = 0; call < 2; ++call) {
        const int seen = watchedCalls;
        if (FailingCall() != PROF_NOT_PARSED || watchedCalls == seen)
            ExitProcess(3);
    }
    ExitProcess(17);
}

TEST(LateBinding, GoesThroughHooksThatWereThereBefore) {
    EXPECT_EQ(clsChild(L"hooked").ExitCodeUnlessItHangs(), 17u);
}

// Child: has no windows. To wait for a pool and to report handles does not bring their library in.
void StayWithoutWindows() {
    const UtilThreadPool pool = UtilThreadPoolOpen(L"service", 1, 0);
    for (int job = 0; job < 100; ++job)
        UtilThreadPoolAdd(
            pool, [](UINT, UINT_PTR, const volatile LONG*) TVUT22_CALL { SwitchToThread(); }, 0);
    const INT finished = UtilThreadPoolFinalize(pool, UTIL_POOL_FOREVER);
    UtilHandleListMgr(UTIL_HANDLES_ADD, CreateEventW(nullptr, TRUE, FALSE, nullptr), UTIL_HANDLE_KERNEL,
                      nullptr);
    const INT reported = UtilHandleListMgr(UTIL_HANDLES_REPORT, nullptr, 0, nullptr);
    ExitProcess(finished != UTIL_OK || reported != 1 || !UtilGetFlags() ? 2
                : GetModuleHandleW(L"user32.dll")                       ? 3
                                                                        : 17);
}

TEST(LateBinding, GivesNoWindowsToAProcessWithoutThem) {
    const clsTempFolder folder;
    SetEnvironmentVariableW(L"TVUT22_LOG", (folder / L"lines.log").c_str());
    EXPECT_EQ(clsChild(L"windowless").ExitCodeUnlessItHangs(), 17u);
    SetEnvironmentVariableW(L"TVUT22_LOG", nullptr);
}

const Roles roles = {{"throwing", EndWhileThrowing},
                     {"open", EndWithAllOpen},
                     {"hooked", CallThroughHook},
                     {"windowless", StayWithoutWindows}};

} // namespace
} // namespace testing_prof

int main(int count, char** arguments) {
    return testing_prof::RunRoleOrTests(count, arguments, testing_prof::roles);
}
