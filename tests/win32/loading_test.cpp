// The library when the process around it ends.
#include "support/child.h"
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
INT failingCall() {
    VARIANT variant;
    return ProfGetVariantFromContents(L"no variant", &variant);
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
