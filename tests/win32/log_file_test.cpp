// Diagnostic lines in the log file: their form, and that each arrives whole, in order, and counted.
#include "support/counted_allocations.h"
#include "support/import_hook.h"
#include "support/roles.h"

#include <tvut22/util.h>

#include <atomic>
#include <map>
#include <regex>
#include <thread>

namespace testing_prof {
namespace {

constexpr const wchar_t* machineKey = L"software\\Velmor";

void WriteLines() {
    UtilDebug(L"number %d, wide %s, narrow %hs, %I64u %#p", -5, L"\u20ac", "8-bit", 1ull << 40,
              (void*)0x12AB);
    PasDebug(L"100%s");
    UtilDebug(nullptr);
    PasDebug(nullptr);
    UtilDebugExt(L"REPORT", 5, L"in");
    UtilDebugExt(L"", -7, L"out");
    UtilError(L"place", L"thing");
    UtilDebug(L"%s", std::wstring(1100, L'y').c_str());
}

// Each thread's lines tell whose and the how many-eth they are.
void WriteFromThreads() {
    constexpr int threadCount = 4, lineCount = 500;
    std::vector<std::jthread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < lineCount; ++i)
                UtilDebugExt(L"SOAK", 0, L"<%u %d %d %s>", GetCurrentProcessId(), t, i,
                             std::wstring(i % 90, L'.').c_str());
        });
}

// The same while modules come and go on twice as many threads, until all lines are written.
void WriteAmongModules() {
    std::atomic<bool> written{false};
    std::vector<std::jthread> modules;
    for (int t = 0; t < 8; ++t)
        modules.emplace_back([&] {
            for (int i = 0; i < 300 || !written; ++i) {
                UtilModuleOnAttach(L"module");
                UtilModuleOnDetach(L"module");
                UtilLOGPAN4Detach();
            }
        });
    WriteFromThreads();
    written = true;
}

int flushes = 0;
BOOL WINAPI CountFlush(HANDLE file) {
    ++flushes;
    return FlushFileBuffers(file);
}

void End(DWORD code) {
    TerminateProcess(GetCurrentProcess(), code);
}

const Roles roles = {
    {"lines", WriteLines},
    {"threads", WriteFromThreads},
    {"modules", WriteAmongModules},
    {"flags", [] { End(UtilGetFlags() ? 1 : 0); }},
    {"flushes",
     [] {
         const clsImportHook hook("FlushFileBuffers", CountFlush);
         PasDebug(L"1");
         PasDebug(L"2");
         End(static_cast<DWORD>(flushes));
     }},
    {"die", // the line must be in the system's hands, not in a buffer that dies with the process
     [] {
         PasDebug(L"last words");
         End(1);
     }},
    {"starved", // settings that cannot be read for want of memory are read by a later line
     [] {
         {
             const clsCountedAllocations none(1);
             PasDebug(L"lost");
         }
         PasDebug(L"kept");
     }},
    {"error", [] {
         SetLastError(1234);
         UtilDebug(L"first");
         UtilGetFlags();
         End(GetLastError());
     }}};

// A machine whose settings name a log file.
class LogFile : public testing::Test {
  protected:
    void SetUp() override {
        SetEnvironmentVariableW(L"TVUT22_LOG", nullptr);
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, machineKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_,
                        nullptr);
        const std::wstring name = folder_ / L"lines.log";
        const auto bytes = static_cast<DWORD>((name.size() + 1) * sizeof(wchar_t));
        RegSetValueExW(key_, L"Debug.LogFilename", 0, REG_SZ, reinterpret_cast<const BYTE*>(name.c_str()),
                       bytes);
    }
    void TearDown() override {
        for (const wchar_t* name : {L"Debug.LogFilename", L"Debug.LogFile.Flush", L"ForceUsePerfCounters"})
            RegDeleteValueW(key_, name);
        RegCloseKey(key_);
    }
    void SetSwitch(const wchar_t* name) {
        const DWORD on = 1;
        RegSetValueExW(key_, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&on), sizeof on);
    }
    std::string Log() const { return ReadBytes(folder_ / L"lines.log"); }
    std::vector<std::string> LogLines() const { return LinesOf(Log()); }
    // Every line of the log with its time, thread and processor taken out, which differ from run to run.
    std::string ConstantPart() const {
        static const std::regex varying(R"(\d\d:\d\d:\d\d\.\d\d\d [0-9a-f]{8}/[0-9a-f]{2} )");
        return std::regex_replace(Log(), varying, "@");
    }

    clsTempFolder folder_;
    HKEY key_ = nullptr;
};

TEST_F(LogFile, HasEveryLineInItsForm) {
    EXPECT_EQ(clsChild(L"lines").ExitCode(), 0u);
    EXPECT_EQ(ConstantPart(), "@1  number -5, wide \x80, narrow 8-bit, 1099511627776 0X000012AB\r\n"
                              "@2  100%s\r\n"
                              "REPORT  : @3  in\r\n"
                              "@4  out\r\n"
                              "@5  \nKX32UTIL['log_file_test']: error in 'place' (thing): \n\r\n"
                              "@6  " +
                                  std::string(1025 - 28, 'y') + "\r\n");
}

TEST_F(LogFile, TakesTimeFromTheCounterWhereAskedTo) {
    SetSwitch(L"ForceUsePerfCounters");
    EXPECT_EQ(clsChild(L"lines").ExitCode(), 0u);
    EXPECT_TRUE(
        std::regex_match(LogLines().at(1), std::regex(R"(00:0\d\.\d\d\d [0-9a-f]{8}/[0-9a-f]{2} 2  100%s)")))
        << LogLines().at(1);
}

TEST_F(LogFile, IsFlushedOnlyWhereAskedTo) {
    EXPECT_EQ(clsChild(L"flushes").ExitCode(), 0u);
    SetSwitch(L"Debug.LogFile.Flush");
    EXPECT_EQ(clsChild(L"flushes").ExitCode(), 2u);
}

TEST_F(LogFile, HoldsWhatAKilledProcessHasWritten) {
    EXPECT_EQ(clsChild(L"die").ExitCode(), 1u);
    EXPECT_EQ(ConstantPart(), "@1  last words\r\n");
}

// The environment's log file comes before the machine's, which is used where the first cannot be had.
TEST_F(LogFile, CanBeNamedForOneProcess) {
    const std::wstring own = folder_ / L"own.log";
    SetEnvironmentVariableW(L"TVUT22_LOG", own.c_str());
    EXPECT_EQ(clsChild(L"die").ExitCode(), 1u);
    EXPECT_EQ(Log(), "");
    EXPECT_NE(ReadBytes(own).find("last words"), std::string::npos);
    EXPECT_EQ(clsChild(L"flags").ExitCode(), 1u);
    for (const std::wstring& none : {folder_ / L"no such folder\\x.log", std::wstring(L"NUL")}) {
        SetEnvironmentVariableW(L"TVUT22_LOG", none.c_str());
        EXPECT_EQ(clsChild(L"flags").ExitCode(), 1u);
    }
    EXPECT_EQ(clsChild(L"die").ExitCode(), 1u);
    EXPECT_EQ(ConstantPart(), "@1  last words\r\n");
    RegDeleteValueW(key_, L"Debug.LogFilename");
    EXPECT_EQ(clsChild(L"flags").ExitCode(), 0u) << "neither";
}

TEST_F(LogFile, IsFoundWhenMemoryIsBack) {
    EXPECT_EQ(clsChild(L"starved").ExitCode(), 0u);
    EXPECT_NE(Log().find("kept"), std::string::npos);
}

TEST_F(LogFile, LeavesTheCallersErrorAlone) {
    EXPECT_EQ(clsChild(L"error").ExitCode(), 1234u);
}

// The word of shared memory by which processes agree may hold anything.
TEST_F(LogFile, IsWrittenWhoeverHoldsItsLock) {
    const Handle file(
        CreateFileW((folder_ / L"lines.log").c_str(), GENERIC_WRITE, 7, nullptr, CREATE_NEW, 0, nullptr));
    BY_HANDLE_FILE_INFORMATION identity{};
    GetFileInformationByHandle(file.get(), &identity);
    wchar_t name[64] = {};
    swprintf(name, std::size(name), L"QmzLOGPANLogFile_%08lx_%08lx%08lx", identity.dwVolumeSerialNumber,
             identity.nFileIndexHigh, identity.nFileIndexLow);
    const Handle mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4, name));
    auto* const word = static_cast<volatile LONG*>(MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, 0));
    const LONG dead = 0x7FFFFFF0, alive = static_cast<LONG>(GetCurrentProcessId());
    for (const LONG owner : {dead, alive}) {
        *word = owner;
        EXPECT_EQ(clsChild(L"die").ExitCode(), 1u);
        EXPECT_EQ(*word, owner == alive ? alive : 0) << "a dead process's lock is taken, a live one's is not";
    }
    UnmapViewOfFile(const_cast<LONG*>(word));
    EXPECT_EQ(ConstantPart(), "@1  last words\r\n@1  last words\r\n");
}

// Holds every line against its form and its place, and counts each process's. Lines about modules, which tell
// no process, are counted with the lines before them.
std::map<std::string, int> CountWhole(const std::vector<std::string>& lines) {
    static const std::regex form(R"((?:SOAK    : )?\d\d:\d\d:\d\d\.\d\d\d [0-9a-f]{8}/[0-9a-f]{2} (\d)  )"
                                 R"((?:<(\d+) (\d) (\d+) (\.*)>|(?:\+\+|--)module \[.*))");
    std::map<std::string, int> counts, digits, numbers; // the next ones of a process, and of a thread
    std::string process;
    for (const std::string& line : lines) {
        std::smatch match;
        EXPECT_TRUE(std::regex_match(line, match, form)) << line;
        if (testing::Test::HasFailure())
            break;
        if (match[2].matched)
            process = match[2];
        const int digit = std::stoi(match[1]);
        EXPECT_EQ(digits.try_emplace(process, digit).first->second++ % 10, digit) << "in the file's order";
        if (!match[2].matched)
            continue;
        const int number = std::stoi(match[4]);
        EXPECT_EQ(numbers[process + " " + match[3].str()]++, number) << "no line lost, none twice";
        EXPECT_EQ(match[5].length(), number % 90);
        ++counts[process];
    }
    return counts;
}

TEST_F(LogFile, KeepsLinesOfThreadsAndProcessesWhole) {
    {
        std::vector<clsChild> children;
        for (int i = 0; i < 3; ++i)
            children.emplace_back(L"threads");
    }
    const auto counts = CountWhole(LogLines());
    EXPECT_EQ(counts.size(), 3u);
    for (const auto& [process, lines] : counts)
        EXPECT_EQ(lines, 4 * 500);
}

TEST_F(LogFile, KeepsLinesWholeWhileModulesComeAndGo) {
    ASSERT_EQ(clsChild(L"modules").ExitCodeUnlessItHangs(), 0u) << "0xDEAD: threads wait for ever";
    const auto counts = CountWhole(LogLines());
    ASSERT_EQ(counts.size(), 1u);
    EXPECT_EQ(counts.begin()->second, 4 * 500);
}

} // namespace
} // namespace testing_prof

int main(int count, char** arguments) {
    return testing_prof::RunRoleOrTests(count, arguments, testing_prof::roles);
}
