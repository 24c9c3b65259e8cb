// The library when it is loaded and unloaded, and when the process around it ends.
#include "support/child.h"
#include "support/copy.h"
#include "support/import_hook.h"

#include <gtest/gtest.h>
#include <tvut22/prof.h>
#include <tvut22/util.h>

#include <atomic>
#include <functional>
#include <map>
#include <thread>

namespace testing_prof {
namespace {

/// Throws and catches within the library.
INT failingCall(decltype(ProfGetVariantFromContents) call = ProfGetVariantFromContents) {
    VARIANT variant;
    return call(L"no variant", &variant);
}

// ---- The end of the process ------------------------------------------------------------------------

/// Child: ends while other threads are throwing, which ExitProcess kills wherever they are.
void endWhileThrowing() {
    static std::atomic<int> calls[2];
    for (auto& count : calls)
        std::thread([&] {
            for (;; ++count)
                failingCall();
        }).detach();
    while (calls[0] < 50 || calls[1] < 50)
        SwitchToThread();
    ExitProcess(17);
}

TEST(ProcessEnd, WaitsForNoKilledThread) {
    for (int round = 0; round < 30; ++round) {
        const Child children[] = {Child(L"throwing"), Child(L"throwing")};
        for (const Child& child : children) {
            const bool ended = child.endsWithin(20000);
            if (!ended)
                child.kill();
            ASSERT_TRUE(ended) << "round " << round;
            EXPECT_EQ(child.exitCode(), 17u);
        }
    }
}

/// Child: ends with a log file, a job and a profile open; whatever the library does about them then is an
/// error, because a killed thread may have left its memory and its locks in any state.
std::atomic<bool> ending{false};
BOOL WINAPI noteClose(HANDLE) {
    if (ending)
        TerminateProcess(GetCurrentProcess(), 2);
    return TRUE;
}
void noteFree(void*) {
    if (ending)
        TerminateProcess(GetCurrentProcess(), 3);
}
void endWithAllOpen() {
    UtilJobOpen(L"open", 0);
    UtilHeapCreate(UtilJobOpen(L"heaps", 0), L"H", UTIL_HEAP_DEBUG);
    ProfSetIntW(ProfJobOpenW(L"no file"), 0, L"a/b", 1);
    UtilDebug(L"a line");
    failingCall();
    static const ImportHook hooks[] = {{"CloseHandle", reinterpret_cast<void*>(noteClose)},
                                       {"UnmapViewOfFile", reinterpret_cast<void*>(noteClose)},
                                       {"free", reinterpret_cast<void*>(noteFree)}};
    ending = true;
    ExitProcess(17);
}

TEST(ProcessEnd, LeavesEverythingToTheSystem) {
    const TempFolder folder;
    SetEnvironmentVariableW(L"TVUT22_LOG", (folder / L"lines.log").c_str());
    EXPECT_EQ(Child(L"open").exitCode(), 17u);
    SetEnvironmentVariableW(L"TVUT22_LOG", nullptr);
}

// ---- Loading and unloading -------------------------------------------------------------------------

std::size_t freeTlsIndexes() {
    std::vector<DWORD> taken;
    for (DWORD index = TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = TlsAlloc())
        taken.push_back(index);
    for (const DWORD index : taken)
        TlsFree(index);
    return taken.size();
}

std::size_t busyBlocks() {
    std::size_t busy = 0;
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(GetProcessHeap());
    while (HeapWalk(GetProcessHeap(), &entry))
        busy += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
    HeapUnlock(GetProcessHeap());
    return busy;
}

// Something of each kind that the library keeps for later.
void use(const Copy& copy) {
    std::thread([&] {
        EXPECT_EQ(failingCall(copy.find(ProfGetVariantFromContents, "ProfGetVariantFromContents")),
                  PROF_NOT_PARSED);
    }).join();
    const UtilJob job = copy.find(UtilJobOpen, "UtilJobOpen")(L"job", 0);
    const UtilHeap heap = copy.find(UtilHeapCreate, "UtilHeapCreate")(job, L"H", UTIL_HEAP_DEBUG);
    void* const object = copy.find(UtilHeapObjectAlloc, "UtilHeapObjectAlloc")(heap, 1, 0);
    EXPECT_EQ(copy.find(UtilHeapObjectFree, "UtilHeapObjectFree")(heap, object), UTIL_OK);
    EXPECT_EQ(copy.find(UtilJobClose, "UtilJobClose")(job), UTIL_HEAPS_LEFT);
}

#ifdef NDEBUG
constexpr int kCycles = 1200; // a process has 1,088 indexes
#else
constexpr int kCycles = 60; // a library with debug information takes its time to load
#endif

TEST(Loading, LeavesNothingBehind) {
    const TempFolder folder;
    const std::wstring path = folder / L"copy.dll";
    Copy::makeFile(path);
    std::size_t indexes = 0, blocks = 0;
    for (int cycle = 0; cycle < kCycles; ++cycle) {
        Copy copy(path);
        ASSERT_TRUE(copy) << "cycle " << cycle;
        use(copy);
        copy.unload();
        if (cycle == 1)
            indexes = freeTlsIndexes(), blocks = busyBlocks();
    }
    EXPECT_EQ(freeTlsIndexes(), indexes);
    EXPECT_LT(busyBlocks(), blocks + kCycles / 2) << "what threads and the loader keep";
}

// Programs of the same compiler may have its runtime as a DLL; the library's own must not mix with it.
TEST(Loading, WorksBesideTheCompilersRuntime) {
    const auto file = std::filesystem::path(TVUT22_COMPILER_RUNTIME).make_preferred();
    const HMODULE runtime = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    ASSERT_TRUE(runtime) << GetLastError();
    const TempFolder folder;
    Copy::makeFile(folder / L"copy.dll");
    const Copy copy(folder / L"copy.dll");
    EXPECT_EQ(failingCall(copy.find(ProfGetVariantFromContents, "ProfGetVariantFromContents")),
              PROF_NOT_PARSED);
    FreeLibrary(runtime);
}

const std::map<std::string, void (*)()> kRoles = {{"throwing", endWhileThrowing}, {"open", endWithAllOpen}};

} // namespace
} // namespace testing_prof

int main(int count, char** arguments) {
    using namespace testing_prof;
    if (count == 2 && kRoles.contains(arguments[1])) {
        kRoles.at(arguments[1])();
        return 0;
    }
    ::testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
