// Crash protection: stack traces against the system's, crashes against the usual way to write a dump, which
// is a filter that has a thread call the debug-help service.
#include "sections.h"

#include <tvut22/tvut22.hpp>

#include <windows.h>

#include <dbghelp.h>

#include <filesystem>

namespace bench {

namespace {

// ---- Crashes --------------------------------------------------------------------------------------

double CrashChild(const std::wstring& way, const std::wstring& folder) {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring line = L"tvut22_bench --crash " + way + L" \"" + folder + L"\"";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    const HANDLE crashes = CreateEventW(nullptr, TRUE, FALSE, L"tvut22_bench crashes");
    ResetEvent(crashes);
    Require(
        CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process),
        "a child process");
    WaitForSingleObject(crashes, INFINITE);
    const double ns = Timed([&] { WaitForSingleObject(process.hProcess, INFINITE); });
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode);
    Require(exitCode == STATUS_ACCESS_VIOLATION, "the child ended otherwise");
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    CloseHandle(crashes);
    return ns;
}

void MeasureCrashes(const scSettings& settings, clsReport& report) {
    const std::wstring folder = settings.folder + L"crashes";
    std::filesystem::create_directories(folder);
    const Round rounds[] = {[&] { return CrashChild(L"ours", folder); },
                            [&] { return CrashChild(L"usual", folder); }};
    const auto ns = Race(rounds, settings.quick ? 1 : 7);
    report.Against("a crash until the process has ended, report and dump", ns[0],
                   "a filter and MiniDumpWriteDump on a thread", ns[1], AtMost(0.5));
    std::filesystem::remove_all(folder);
}

void MeasureStart(const scSettings& settings, clsReport& report) {
    const std::wstring folder = settings.folder + L"reports";
    UtilProtection options{};
    options.size = sizeof options;
    options.folder = folder.c_str();
    const Round rounds[] = {[&] {
        return Timed([&] {
            Require(UtilExHandlerStartProtection(&options) >= 0, "UtilExHandlerStartProtection");
            UtilExHandlerEndProtection();
        });
    }};
    const auto ns = Race(rounds, settings.rounds);
    constexpr double atMost = 5e6; // nanoseconds
    report.Against("StartProtection and EndProtection", ns[0], "5 ms", atMost, AtMost(1));
    std::filesystem::remove_all(folder);
}

// ---- Without a crash -------------------------------------------------------------------------------

class clsProtected {
  public:
    explicit clsProtected(const std::wstring& folder) {
        UtilProtection options{};
        options.size = sizeof options;
        options.folder = folder.c_str();
        Require(UtilExHandlerStartProtection(&options) >= 0, "UtilExHandlerStartProtection");
    }
    ~clsProtected() { UtilExHandlerEndProtection(); }
    clsProtected(const clsProtected&) = delete;
    clsProtected& operator=(const clsProtected&) = delete;
};

void CallLibrary() {
    Consume(static_cast<std::size_t>(UtilStricmp(L"Invoice Designer", L"invoice designer")));
}

// What passes the places where protection stands: the search for a handler of what is thrown.
void ThrowAndCatch() {
    try {
        throw 1;
    } catch (int value) {
        Consume(static_cast<std::size_t>(value));
    }
}

DWORD WINAPI DoNothing(void*) {
    return 0;
}

void RunThread() {
    const HANDLE thread = CreateThread(nullptr, 0, DoNothing, nullptr, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

struct scOrdinary {
    const char* work;
    void (*call)();
    std::size_t calls;
};

// The goal is no cost at all; two measurements of the same differ by that much.
void MeasureOrdinary(const scSettings& settings, clsReport& report, const scOrdinary& ordinary) {
    const std::wstring folder = settings.folder + L"reports";
    const auto perCall = [&] { return PerCall(ordinary.calls, [&](std::size_t) { ordinary.call(); }); };
    const Round rounds[] = {[&] {
                                const clsProtected whileMeasured(folder);
                                return perCall();
                            },
                            perCall};
    const auto ns = Race(rounds, settings.rounds);
    report.Against(ordinary.work, ns[0], "without protection", ns[1], AtMost(1.1));
    std::filesystem::remove_all(folder);
}

// ---- The child ------------------------------------------------------------------------------------

HANDLE dumpWanted = nullptr, dumpWritten = nullptr;
EXCEPTION_POINTERS* crashed = nullptr;
DWORD crashedThread = 0;
std::wstring dumpPath;

DWORD WINAPI WriteUsualDump(void* write) {
    WaitForSingleObject(dumpWanted, INFINITE);
    const HANDLE file = CreateFileW(dumpPath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    MINIDUMP_EXCEPTION_INFORMATION information{crashedThread, crashed, FALSE};
    reinterpret_cast<decltype(&MiniDumpWriteDump)>(write)(GetCurrentProcess(), GetCurrentProcessId(), file,
                                                          MiniDumpNormal, &information, nullptr, nullptr);
    CloseHandle(file);
    SetEvent(dumpWritten);
    return 0;
}

LONG WINAPI UsualFilter(EXCEPTION_POINTERS* exception) {
    crashed = exception;
    crashedThread = GetCurrentThreadId();
    SetEvent(dumpWanted);
    WaitForSingleObject(dumpWritten, 30000);
    TerminateProcess(GetCurrentProcess(), exception->ExceptionRecord->ExceptionCode);
    return EXCEPTION_CONTINUE_SEARCH;
}

void ProtectAsUsual(const std::wstring& folder) {
    dumpPath = folder + L"\\usual.dmp";
    dumpWanted = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    dumpWritten = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    void* const write =
        reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(L"dbghelp.dll"), "MiniDumpWriteDump"));
    CloseHandle(CreateThread(nullptr, 0, WriteUsualDump, write, 0, nullptr));
    SetUnhandledExceptionFilter(UsualFilter);
}

} // namespace

void CrashAs(const std::string& way, const std::wstring& folder) {
    UtilProtection options{};
    options.size = sizeof options;
    options.flags = UTIL_PROTECT_END;
    options.folder = folder.c_str();
    if (way == "ours")
        UtilExHandlerStartProtection(&options);
    else
        ProtectAsUsual(folder);
    const HANDLE crashes = CreateEventW(nullptr, TRUE, FALSE, L"tvut22_bench crashes");
    SetEvent(crashes);
    CloseHandle(crashes);
    volatile int* volatile nowhere = nullptr;
    // cppcheck-suppress nullPointer ; as is meant
    *nowhere = 1; // NOLINT(clang-analyzer-core.NullDereference)
}

void MeasureCrash(const scSettings& settings, clsReport& report) {
    report.Section("Crash protection");
    MeasureCrashes(settings, report);
    MeasureStart(settings, report);
    for (const scOrdinary& ordinary :
         {scOrdinary{"a call of the library while protected", CallLibrary, 100000},
          scOrdinary{"a throw that is caught while protected", ThrowAndCatch, 2000},
          scOrdinary{"a thread from begin to end while protected", RunThread, 100}})
        MeasureOrdinary(settings, report, ordinary);
}

} // namespace bench
