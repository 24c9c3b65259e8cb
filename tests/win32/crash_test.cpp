// Crashes of a child process: what the report says of each, and what is left when nothing can be written.
#include "support/beside_test.h"
#include "support/files.h"
#include "support/import_hook.h"
#include "support/test_data.h"

#include <gtest/gtest.h>
#include <tvut22/tvut22.hpp>

#include <algorithm>
#include <functional>
#include <map>
#include <sstream>
#include <vector>

namespace testing_prof {
namespace {

namespace fs = std::filesystem;

constexpr UINT toTheEnd = UTIL_PROTECT_END;

// How a child ended, and what its "after" was told.
struct scEnd {
    DWORD exitCode = 0, processId = 0;
    std::wstring after{};
};

// Runs a child until it ends, and work beside it as soon as it has written something.
scEnd RunChild(const std::wstring& folder, UINT flags, std::string_view place, std::string_view crash,
               const std::function<void(HANDLE process)>& beside = {}) {
    HANDLE read = nullptr, write = nullptr;
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    CreatePipe(&read, &write, &inherited, 0);
    const Handle reader(read);
    Handle writer(write);
    std::wstring line = L"crash_child \"" + folder + L"\" " + std::to_wstring(flags) + L" " +
                        std::wstring(place.begin(), place.end()) + L" " +
                        std::wstring(crash.begin(), crash.end());
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = start.hStdError = write;
    PROCESS_INFORMATION process{};
    const std::wstring program = BesideTest(L"crash_child.exe").wstring();
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                        &process))
        return {};
    const Handle child(process.hProcess), thread(process.hThread);
    writer.reset();
    scEnd end{.processId = process.dwProcessId};
    wchar_t text[1024];
    DWORD bytes = 0;
    if (beside && ReadFile(reader.get(), text, sizeof text, &bytes, nullptr))
        beside(child.get());
    if (WaitForSingleObject(child.get(), 20000) == WAIT_TIMEOUT)
        TerminateProcess(child.get(), 0xDEAD);
    WaitForSingleObject(child.get(), INFINITE);
    GetExitCodeProcess(child.get(), &end.exitCode);
    // What it has written; the desktop, which a window starts, may keep the pipe open.
    while (PeekNamedPipe(reader.get(), nullptr, 0, nullptr, &bytes, nullptr) && bytes > 0 &&
           ReadFile(reader.get(), text, sizeof text, &bytes, nullptr))
        end.after.append(text, bytes / sizeof(wchar_t));
    return end;
}

// A report's fields, and its blocks of lines.
struct scReport {
    explicit scReport(const fs::path& path) {
        std::istringstream text(ReadBytes(path));
        std::string line, name;
        std::getline(text, title);
        while (std::getline(text, line)) {
            isWhole = isWhole && line.ends_with('\r');
            line.pop_back();
            if (line.starts_with("  ")) {
                blocks[name].push_back(line.substr(2));
                continue;
            }
            name = line.substr(0, line.find(':'));
            const std::string value = line.substr(std::min(line.size(), name.size() + 2));
            fields[name] += (fields[name].empty() ? "" : "|") + value;
            order += name + " ";
        }
    }
    std::string title, order;
    bool isWhole = true; // each line ends with CR LF
    std::map<std::string, std::string> fields;
    std::map<std::string, std::vector<std::string>> blocks;
};

std::vector<fs::path> Files(const fs::path& folder, std::wstring_view ending) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().wstring().ends_with(ending))
            files.push_back(entry.path());
    return files;
}

// Whether a frame names a function and a line of its source that crashes.
bool Crashes(const std::string& frame, std::string_view function) {
    const std::size_t from = frame.rfind('('), colon = frame.rfind(':');
    if (frame.find(function) == std::string::npos || from == std::string::npos || colon == std::string::npos)
        return false;
    std::ifstream source(fs::path(tvut::TestData()) / "../win32" / frame.substr(from + 1, colon - from - 1));
    std::string line;
    for (int left = std::stoi(frame.substr(colon + 1)); left > 0; --left)
        std::getline(source, line);
    return line.ends_with("// crashes");
}

// ---- The table ------------------------------------------------------------------------------------

struct scRow {
    const char *place, *crash;
    DWORD code, exitCode;
    const char* reason;
    const char* access;   // how it begins
    const char* function; // that crashes,
    std::size_t within;   // among so many frames: runtimes have frames of their own
};
constexpr DWORD violation = 0xC0000005, aborted = 0x40000015, badParameter = 0xC0000417;
constexpr scRow rows[] = {
    {"main", "write", violation, violation, "access violation", "write 0x00000000", "CrashWrite", 1},
    {"main", "read", violation, violation, "access violation", "read 0x00000000", "CrashRead", 1},
    {"main", "execute", violation, violation, "access violation", "execute 0x00000000", "CrashExecute", 2},
    {"thread", "write", violation, violation, "access violation", "write", "CrashWrite", 1},
    {"thread", "execute", violation, violation, "access violation", "execute", "CrashExecute", 2},
    {"job", "write", violation, violation, "access violation", "write", "CrashWrite", 1},
    {"job", "execute", violation, violation, "access violation", "execute", "CrashExecute", 2},
    {"window", "write", violation, violation, "access violation", "write", "CrashWrite", 1},
    {"main", "overflow", 0xC00000FD, 0xC00000FD, "stack overflow", "", "CrashOverflow", 2},
    {"thread", "overflow", 0xC00000FD, 0xC00000FD, "stack overflow", "", "CrashOverflow", 2},
    {"job", "overflow", 0xC00000FD, 0xC00000FD, "stack overflow", "", "CrashOverflow", 2},
    {"main", "ud2", 0xC000001D, 0xC000001D, "illegal instruction", "", "CrashInstruction", 1},
    {"main", "divide", 0xC0000094, 0xC0000094, "integer division by zero", "", "CrashDivision", 1},
    {"main", "break", 0x80000003, 0x80000003, "breakpoint", "", "CrashBreakpoint", 1},
    {"main", "raise", 0xE0001234, 0xE0001234, "exception", "", "CrashRaise", 2},
    {"main", "abort", aborted, 3, "abort", "", "CrashAbort", 3},
    {"job", "abort", aborted, 3, "abort", "", "CrashAbort", 3},
    {"main", "terminate", aborted, 3, "abort", "", "CrashTerminate", 6},
    {"main", "throw", aborted, 3, "abort", "", "CrashThrow", 7},
    {"main", "foreign", aborted, 3, "abort", "", "CrashForeignAbort", 3},
    {"late", "foreign", aborted, 3, "abort", "", "CrashForeignAbort", 3},
    {"main", "purecall", aborted, 3, "pure virtual call", "", "CrashPureCall", 2},
    {"late", "purecall", aborted, 3, "pure virtual call", "", "CrashPureCall", 2},
    {"main", "parameter", aborted, 3, "invalid parameter", "", "CrashParameter", 4},
    {"late", "parameter", aborted, 3, "invalid parameter", "", "CrashParameter", 4},
    {"main", "locked", violation, violation, "access violation", "write", "CrashWrite", 1},
    {"main", "overwritten", violation, violation, "access violation", "write", "CrashWrite", 1},
    {"main", "twice", violation, violation, "access violation", "write", "CrashWrite", 1},
    {"main", "loading", aborted, 3, "abort", "", "AbortWhen", 3},
    {"main", "ending", aborted, 3, "abort", "", "AbortWhen", 3},
};

class Crash : public testing::TestWithParam<scRow> {};

TEST_P(Crash, LeavesReportAndDump) {
    const scRow& row = GetParam();
    const clsTempFolder folder;
    const scEnd end = RunChild(folder.Path().wstring(), toTheEnd, row.place, row.crash);
    ASSERT_EQ(end.exitCode, row.exitCode);
    const auto reports = Files(folder.Path(), L".txt"), dumps = Files(folder.Path(), L".dmp");
    ASSERT_EQ(reports.size(), 1u);
    ASSERT_EQ(folder.Count(), 2);
    scReport report(reports[0]);
    auto& fields = report.fields;
    EXPECT_EQ(report.title, "tvUT22 report 1\r");
    EXPECT_TRUE(report.isWhole);
    const std::string access = *row.access ? "Access " : "";
    EXPECT_EQ(report.order, "Product Version Program Time Process Thread Reason Code Address " + access +
                                "Registers System Note Note Stack Modules Dump ");
    EXPECT_EQ(fields["Product"], "Crash  child");
    EXPECT_EQ(fields["Version"], "4.2");
    EXPECT_TRUE(fields["Program"].ends_with("\\crash_child.exe"));
    EXPECT_EQ(fields["Process"], std::to_string(end.processId));
    EXPECT_EQ(fields["Reason"], row.reason);
    EXPECT_EQ(std::stoul(fields["Code"], nullptr, 16), row.code);
    EXPECT_TRUE(fields["Access"].starts_with(row.access)) << fields["Access"];
    EXPECT_EQ(fields["Note"], "Document=C:\\x\\m\u00e4rz.rpt|Step=two  lines");
    const auto& stack = report.blocks["Stack"];
    bool named = false;
    for (std::size_t i = 0; i < std::min(row.within, stack.size()); ++i)
        named = named || Crashes(stack[i], row.function);
    EXPECT_TRUE(named) << testing::PrintToString(stack);
    EXPECT_EQ(fields["Dump"], dumps[0].filename().string());
    EXPECT_TRUE(ReadBytes(dumps[0]).starts_with("MDMP"));
    EXPECT_EQ(end.after, reports[0].wstring() + L"|" + dumps[0].wstring() + L"|4711");
    const auto& modules = report.blocks["Modules"];
    for (const std::string_view module : {"\\crash_child.exe", "\\tvUT22.dll", "\\ntdll.dll"})
        EXPECT_TRUE(std::ranges::any_of(modules, [&](const auto& line) { return line.ends_with(module); }));
    if (const wchar_t* const kept = _wgetenv(L"TVUT22_KEPT_DUMPS")) {
        const fs::path to = fs::path(kept) / (std::string(row.place) + "-" + row.crash + "-" + row.function);
        fs::copy_file(dumps[0], fs::path(to) += ".dmp", fs::copy_options::overwrite_existing);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Crash, testing::ValuesIn(rows), [](const auto& row) {
    return std::string(row.param.place) + "_" + row.param.crash;
});

// ---- What comes after, and around it ----------------------------------------------------------------

struct scWay {
    UINT flags;
    const char *place, *crash;
    DWORD exitCode;
    std::ptrdiff_t files;
};

TEST(Protection, GoesOnAsItWasWithoutIt) {
    for (const auto& [flags, place, crash, exitCode, files] : {
             scWay{0, "main", "write", 98, 2}, // the filter that was there before
             {0, "chain", "write", 98, 2},     // by way of one that came later and calls ours
             {toTheEnd, "chain", "write", violation, 2},
             {0, "main", "abort", 3, 2},
             {toTheEnd, "ended", "write", 98, 0},
             {toTheEnd, "ended", "abort", 3, 0},
             {0, "main", "parameter", badParameter, 2},
             {toTheEnd, "ended", "parameter", 98, 0}, // nobody but the runtime looks at it
             {toTheEnd, "main", "none", 17, 0},
         }) {
        const clsTempFolder folder;
        EXPECT_EQ(RunChild(folder.Path().wstring(), flags, place, crash).exitCode, exitCode)
            << place << crash;
        EXPECT_EQ(folder.Count(), files) << place << crash;
    }
}

// The window of a process that shows one, and the text in it.
struct scNotice {
    DWORD process = 0;
    HWND window = nullptr;
    std::wstring text{};
};
BOOL CALLBACK TakeNotice(HWND window, LPARAM parameter) {
    auto& notice = *reinterpret_cast<scNotice*>(parameter);
    DWORD process = 0;
    wchar_t text[MAX_PATH] = L"";
    GetWindowThreadProcessId(window, &process);
    const HWND label = GetDlgItem(window, 0xFFFF);
    if (process != notice.process || !label || !IsWindowVisible(window))
        return TRUE;
    SendMessageW(label, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text));
    notice.window = window;
    notice.text = text;
    return FALSE;
}

TEST(Protection, ShowsANoticeThatNamesTheReport) {
    const clsTempFolder folder;
    scNotice notice;
    const auto closeNotice = [&](HANDLE child) {
        notice.process = GetProcessId(child);
        while (!notice.window && WaitForSingleObject(child, 5) == WAIT_TIMEOUT)
            EnumWindows(TakeNotice, reinterpret_cast<LPARAM>(&notice));
        wchar_t title[100] = L"";
        GetWindowTextW(notice.window, title, static_cast<int>(std::size(title)));
        EXPECT_STREQ(title, L"Crash\r\nchild");
        EXPECT_EQ(WaitForSingleObject(child, 0), WAIT_TIMEOUT) << "it waits for its reader";
        PostMessageW(notice.window, WM_CLOSE, 0, 0);
    };
    const scEnd end =
        RunChild(folder.Path().wstring(), toTheEnd | UTIL_PROTECT_NOTICE, "main", "write", closeNotice);
    EXPECT_EQ(end.exitCode, violation);
    EXPECT_EQ(notice.text, Files(folder.Path(), L".txt").at(0).wstring());
}

TEST(Protection, EndsAMinuteAfterANoticeThatNobodyReads) {
    const clsTempFolder folder;
    for (const char* crash : {"write", "twice"})
        EXPECT_EQ(RunChild(folder.Path().wstring(), UTIL_PROTECT_NOTICE, "unread", crash).exitCode,
                  violation);
    EXPECT_EQ(folder.Count(), 4) << "reports and dumps";
}

// ---- The folder -------------------------------------------------------------------------------------

UtilProtection Options(const std::wstring& folder) {
    UtilProtection options{};
    options.size = sizeof options;
    options.folder = folder.c_str();
    return options;
}

INT StartAndEnd(const UtilProtection& options) {
    const INT waiting = UtilExHandlerStartProtection(&options);
    EXPECT_EQ(UtilExHandlerEndProtection(), waiting >= 0 ? UTIL_OK : UTIL_NOT_FOUND);
    return waiting;
}

TEST(ReportFolder, IsMadeOrRefused) {
    const clsTempFolder folder;
    const std::wstring deep = folder / L"a\\b\\c",
                       longest = folder / std::wstring(200, L'x') + L"\\" + std::wstring(99, L'y');
    WriteBytes(folder / L"file", "");
    for (const auto& [path, result] :
         {std::pair(deep, 0), std::pair(longest, 0), std::pair(folder / L"file", UTIL_NO_ACCESS),
          std::pair(std::wstring(L"Z:\\proc\\reports"), UTIL_NO_ACCESS),
          std::pair(folder / std::wstring(220, L'x') + std::wstring(500, L'\\') + L"..\\" +
                        std::wstring(800, L'x'),
                    UTIL_NO_ACCESS)})
        EXPECT_EQ(StartAndEnd(Options(path)), result) << fs::path(path);
    EXPECT_TRUE(fs::is_empty(deep));
    EXPECT_EQ(RunChild(longest, toTheEnd, "main", "write").exitCode, violation);
    WIN32_FIND_DATAW found;
    const HANDLE dumps = FindFirstFileW((L"\\\\?\\" + longest + L"\\*.dmp").c_str(), &found);
    EXPECT_TRUE(FindClose(dumps)) << "there is none";
    UtilProtection wrong = Options(deep);
    wrong.size = 31;
    EXPECT_EQ(StartAndEnd(wrong), UTIL_BAD_ARGUMENT);
    wrong = Options(deep);
    wrong.flags = 8;
    EXPECT_EQ(StartAndEnd(wrong), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilExHandlerEndProtection(), UTIL_NOT_FOUND);
}

TEST(ReportFolder, KeepsTheNewestOfItsOwn) {
    const clsTempFolder folder;
    const std::wstring strangers[] = {L"other-20250101-000000-7.txt", L"crash_test-notes.txt",
                                      L"crash_test-20250101-000000-.txt",
                                      L"crash_test-20250101-00000x-7.txt"};
    for (const std::wstring& name : strangers)
        WriteBytes(folder / name, "");
    for (int day = 10; day < 24; ++day)
        for (const wchar_t* const ending : {L"-000000-7.txt", L"-000000-7.dmp"})
            WriteBytes(folder / (L"crash_test-202501" + std::to_wstring(day) + ending), "");
    const std::wstring path = folder.Path().wstring();
    UtilProtection options = Options(path);
    EXPECT_EQ(StartAndEnd(options), 10);
    options.keep = 3;
    EXPECT_EQ(StartAndEnd(options), 3);
    EXPECT_EQ(folder.Count(), 6 + static_cast<std::ptrdiff_t>(std::size(strangers)));
    EXPECT_TRUE(fs::exists(folder / L"crash_test-20250121-000000-7.dmp"));
}

// A dump of all memory has no room there; with the disk full but for some bytes the report has none, either.
TEST(FullDisk, LeavesAWholeReportAndNoPartOfADump) {
    const wchar_t* const disk = _wgetenv(L"TVUT22_SMALL_DISK");
    ASSERT_TRUE(disk) << "TVUT22_SMALL_DISK is not set: run this test in the session of scripts/test";
    for (const std::size_t filled : {0u, 248u * 1024u}) {
        const clsTempFolder folder{fs::path(disk)};
        WriteBytes(folder / L"filler", std::string(filled, 'x'));
        const scEnd end = RunChild(folder.Path().wstring(), toTheEnd | UTIL_PROTECT_FULL, "main", "write");
        EXPECT_EQ(end.exitCode, violation);
        ASSERT_EQ(folder.Count(), 2);
        scReport report(Files(folder.Path(), L".txt").at(0));
        EXPECT_TRUE(filled != 0 || report.fields["Dump"] == "none (0xC000007F)") << report.fields["Dump"];
        EXPECT_TRUE(end.after.ends_with(L".txt|-|4711"));
    }
}

// ---- Traces and dumps at any time -------------------------------------------------------------------

std::vector<std::wstring> Trace(UINT thread, const CONTEXT* context, UINT skip) {
    BSTR text = nullptr;
    EXPECT_EQ(UtilDebugHelpGetStackTrace(thread, context, skip, &text), UTIL_OK);
    std::wistringstream lines(text ? text : L"");
    SysFreeString(text);
    std::vector<std::wstring> frames;
    for (std::wstring line; std::getline(lines, line); frames.push_back(line))
        EXPECT_TRUE(line.ends_with(L'\r'));
    return frames;
}

bool Names(const std::vector<std::wstring>& frames, std::size_t i, std::wstring_view function) {
    return i < frames.size() && frames[i].find(function) != std::wstring::npos;
}

[[gnu::noinline]] std::vector<std::wstring> InnerTrace(UINT skip) {
    return Trace(0, nullptr, skip);
}
[[gnu::noinline]] std::vector<std::wstring> OuterTrace(UINT skip) {
    return InnerTrace(skip);
}

HANDLE waitsThere = nullptr;
DWORD WINAPI WaitsInside(void* end) {
    SetEvent(waitsThere);
    WaitForSingleObject(end, INFINITE);
    return 0;
}

TEST(StackTrace, TellsWhereThreadsAre) {
    const auto frames = OuterTrace(0), fewer = OuterTrace(2);
    EXPECT_TRUE(Names(frames, 0, L"Trace") && Names(frames, 1, L"InnerTrace") &&
                Names(frames, 2, L"OuterTrace"));
    EXPECT_NE(frames[1].find(L"(crash_test.cpp:"), std::wstring::npos) << frames[1].c_str();
    EXPECT_TRUE(Names(fewer, 0, L"OuterTrace"));
    EXPECT_TRUE(OuterTrace(1000).empty());
    CONTEXT here;
    RtlCaptureContext(&here);
    const std::wstring caller = frames.at(4); // these registers are those of the test's caller
    EXPECT_TRUE(Names(Trace(0, &here, 0), 0, caller.substr(0, caller.find(L" ("))));
    EXPECT_EQ(UtilDebugHelpGetStackTrace(GetCurrentThreadId(), &here, 0, nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilDebugHelpGetStackTrace(0, nullptr, 0, nullptr), UTIL_OK);
}

TEST(StackTrace, TellsOfOtherThreads) {
    waitsThere = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const Handle end(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    DWORD id = 0;
    const Handle thread(CreateThread(nullptr, 0, WaitsInside, end.get(), 0, &id));
    WaitForSingleObject(waitsThere, INFINITE);
    const auto frames = Trace(id, nullptr, 0);
    EXPECT_TRUE(std::ranges::any_of(
        frames, [](const auto& frame) { return frame.find(L"WaitsInside") != frame.npos; }));
    SetEvent(end.get());
    WaitForSingleObject(thread.get(), INFINITE);
    EXPECT_EQ(UtilDebugHelpGetStackTrace(id, nullptr, 0, nullptr), UTIL_NOT_FOUND);
    EXPECT_EQ(UtilStackTrace(L"nobody listens", 0, 0), 0);
}

TEST(MiniDump, IsOfThisProcessOrAnother) {
    const clsTempFolder folder;
    const std::wstring path = folder / L"a.dmp";
    EXCEPTION_RECORD record{};
    CONTEXT context{};
    EXCEPTION_POINTERS exception{&record, &context};
    constexpr UINT other = 1; // stands for the child
    const struct {
        const wchar_t* file;
        UINT flags, process;
        EXCEPTION_POINTERS* exception;
        INT result;
    } calls[] = {
        {path.c_str(), 0, 0, nullptr, UTIL_OK},
        {path.c_str(), 0, GetCurrentProcessId(), &exception, UTIL_OK},
        {path.c_str(), 0, other, nullptr, UTIL_OK},
        {path.c_str(), UTIL_DUMP_FULL, other, nullptr, UTIL_OK},
        {nullptr, 0, 0, nullptr, UTIL_BAD_ARGUMENT},
        {L"", 0, 0, nullptr, UTIL_BAD_ARGUMENT},
        {path.c_str(), 2, 0, nullptr, UTIL_BAD_ARGUMENT},
        {path.c_str(), 0, 0xFFFFFFF0, nullptr, UTIL_NOT_FOUND},
        {L"Z:\\nowhere\\a.dmp", 0, 0, nullptr, UTIL_NOT_FOUND},
    };
    const auto callAll = [&](HANDLE child) {
        for (const auto& [file, flags, process, at, result] : calls) {
            EXPECT_EQ(UtilDebugHelpWriteMiniDump(file, flags,
                                                 process == other ? GetProcessId(child) : process, 0, at),
                      result);
            EXPECT_EQ(folder.Count(), 1);
            EXPECT_TRUE(ReadBytes(path).starts_with("MDMP"));
        }
        TerminateProcess(child, 0);
    };
    RunChild(L"crash-reports", 0, "main", "hang", callAll);
}

// What a 64-bit system answers: whether a process is a 32-bit one. The systems of the tests have no other.
bool othersAre32Bit = false;
BOOL WINAPI AnswerOf64Bit(HANDLE process, BOOL* is32Bit) {
    *is32Bit = process == GetCurrentProcess() || othersAre32Bit;
    return TRUE;
}

TEST(MiniDump, IsOfNo64BitProcess) {
    const clsTempFolder folder;
    const clsImportHook hook("IsWow64Process", AnswerOf64Bit);
    const auto callBoth = [&](HANDLE child) {
        for (const auto& [is32Bit, result] :
             {std::pair(false, UTIL_NOT_SUPPORTED), std::pair(true, UTIL_OK)}) {
            othersAre32Bit = is32Bit;
            EXPECT_EQ(
                UtilDebugHelpWriteMiniDump((folder / L"a.dmp").c_str(), 0, GetProcessId(child), 0, nullptr),
                result);
            EXPECT_EQ(folder.Count(), is32Bit ? 1 : 0);
        }
        TerminateProcess(child, 0);
    };
    RunChild(L"crash-reports", 0, "main", "hang", callBoth);
}

} // namespace
} // namespace testing_prof
