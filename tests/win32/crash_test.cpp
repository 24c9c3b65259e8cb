// Crashes of a child process: what the report says of each, and what is left when nothing can be written.
#include "support/files.h"

#include <gtest/gtest.h>
#include <tvut22/tvut22.hpp>

#include <algorithm>
#include <map>
#include <sstream>
#include <vector>

namespace testing_prof {
namespace {

namespace fs = std::filesystem;

constexpr UINT toTheEnd = UTIL_PROTECT_END;

/// How a child ended, and what its "after" was told.
struct scEnd {
    DWORD exitCode = 0, processId = 0;
    std::wstring after{};
};

scEnd RunChild(const std::wstring& folder, UINT flags, std::string_view place, std::string_view crash) {
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
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    const std::wstring program = fs::path(self).replace_filename(L"crash_child.exe").wstring();
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                        &process))
        return {};
    const Handle child(process.hProcess), thread(process.hThread);
    writer.reset();
    scEnd end{.processId = process.dwProcessId};
    if (WaitForSingleObject(child.get(), 20000) == WAIT_TIMEOUT)
        TerminateProcess(child.get(), 0xDEAD); // it hangs
    GetExitCodeProcess(child.get(), &end.exitCode);
    wchar_t text[1024];
    DWORD bytes = 0;
    while (ReadFile(reader.get(), text, sizeof text, &bytes, nullptr) && bytes > 0)
        end.after.append(text, bytes / sizeof(wchar_t));
    return end;
}

/// A report's fields, and its blocks of lines.
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

/// Whether a frame names a function and a line of its source that crashes.
bool Crashes(const std::string& frame, std::string_view function) {
    const std::size_t from = frame.rfind('('), colon = frame.rfind(':');
    if (frame.find(function) == std::string::npos || from == std::string::npos || colon == std::string::npos)
        return false;
    std::ifstream source(fs::path(TVUT22_CRASH_SOURCES) / frame.substr(from + 1, colon - from - 1));
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
constexpr DWORD violation = 0xC0000005, aborted = 0x40000015;
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
    // The compiler's own runtime keeps no frame pointers, so the frame of who calls it is not in the chain.
    {"main", "terminate", aborted, 3, "abort", "", "wmain", 5},
    {"main", "throw", aborted, 3, "abort", "", "wmain", 5},
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
             scWay{0, "main", "write", 98, 2},         // the filter that was there before
             {0, "chain", "write", 98, 2},             // by way of one that came later and calls ours
             {toTheEnd, "chain", "write", violation, 2},
             {0, "main", "abort", 3, 2},
             {toTheEnd, "ended", "write", 98, 0},
             {toTheEnd, "ended", "abort", 3, 0},
             {toTheEnd, "main", "none", 17, 0},
         }) {
        const clsTempFolder folder;
        EXPECT_EQ(RunChild(folder.Path().wstring(), flags, place, crash).exitCode, exitCode) << place << crash;
        EXPECT_EQ(folder.Count(), files) << place << crash;
    }
}

} // namespace
} // namespace testing_prof
