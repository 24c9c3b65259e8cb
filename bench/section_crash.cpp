// Crash protection: stack traces against the system's, crashes against the usual way to write a dump, which
// is a filter that has a thread call the debug-help service.
#include "sections.h"

#include <tvut22/tvut22.hpp>

#include <windows.h>

#include <dbghelp.h>

#include <filesystem>

namespace bench {

namespace {

// ---- Frames ---------------------------------------------------------------------------------------

// Calls the work with so many frames of ours above it.
template <class Work>
[[gnu::noinline]] std::size_t AtDepth(int depth, Work& work) {
    if (depth == 0)
        return work();
    return AtDepth(depth - 1, work) + 1;
}

double PerTrace(int depth, std::size_t calls, std::size_t (*trace)()) {
    double ns = 0;
    auto work = [&] {
        ns = PerCall(calls, [&](std::size_t) { Consume(trace()); });
        return std::size_t{0};
    };
    Consume(AtDepth(depth, work));
    return ns;
}

std::size_t OurTrace() {
    return static_cast<std::size_t>(UtilDebugHelpGetStackTrace(0, nullptr, 0, nullptr));
}

std::size_t SystemTrace() {
    void* frames[64];
    return CaptureStackBackTrace(0, 64, frames, nullptr);
}

void MeasureFrames(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 1000 : 100000;
    for (const int depth : {16, 40}) {
        const Round rounds[] = {[&] { return PerTrace(depth, calls, OurTrace); },
                                [&] { return PerTrace(depth, calls, SystemTrace); }};
        const auto ns = Race(rounds, settings.rounds);
        report.Against("the caller's frames without names, " + std::to_string(depth) + " deep", ns[0],
                       "CaptureStackBackTrace", ns[1], AtMost(1.5));
    }
}

// ---- Names ----------------------------------------------------------------------------------------

// The service for this process, as programs use it.
class clsService {
  public:
    clsService() {
        const HMODULE library = LoadLibraryW(L"dbghelp.dll");
        const auto find = [&](const char* name) {
            return reinterpret_cast<void*>(GetProcAddress(library, name));
        };
        fromAddress_ = reinterpret_cast<decltype(fromAddress_)>(find("SymFromAddrW"));
        const auto begin = reinterpret_cast<decltype(&SymInitializeW)>(find("SymInitializeW"));
        Require(library && fromAddress_ && begin && begin(GetCurrentProcess(), nullptr, TRUE),
                "the debug-help service");
    }
    bool Name(DWORD64 address) const {
        alignas(SYMBOL_INFOW) char room[sizeof(SYMBOL_INFOW) + 512] = {};
        auto* const symbol = reinterpret_cast<SYMBOL_INFOW*>(room);
        symbol->SizeOfStruct = sizeof(SYMBOL_INFOW);
        symbol->MaxNameLen = 256;
        DWORD64 offset = 0;
        return fromAddress_(GetCurrentProcess(), address, &offset, symbol) != FALSE;
    }

  private:
    decltype(&SymFromAddrW) fromAddress_ = nullptr;
};

// A trace of one frame, which lies in this program: a context at an address.
double NameOurs(DWORD address) {
    CONTEXT context{};
    context.Eip = address;
    BSTR text = nullptr;
    const double ns = Timed([&] { UtilDebugHelpGetStackTrace(0, &context, 0, &text); });
    Require(text && SysStringLen(text) > 30, "a frame has no name");
    SysFreeString(text);
    return ns;
}

// Each time another function's address, so that nothing is known of it; then the same again.
void MeasureNames(const scSettings& settings, clsReport& report) {
    const clsService service;
    const auto base = static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(GetModuleHandleW(nullptr)));
    DWORD next = base + 0x2000, nextOfService = next;
    DWORD known = next;
    NameOurs(known);
    const Round rounds[] = {[&] { return NameOurs(known = next += 0x90); },
                            [&] {
                                nextOfService += 0x90;
                                return Timed([&] { Consume(service.Name(nextOfService)); });
                            },
                            [&] {
                                NameOurs(known);
                                return NameOurs(known);
                            }};
    const auto ns = Race(rounds, settings.rounds);
    report.Against("a frame's line with its name, first time", ns[0], "SymFromAddrW", ns[1], AtMost(1));
    report.Against("a frame's line with its name, again", ns[2], "SymFromAddrW", ns[1], AtMost(0.05));
}

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
    CreateThread(nullptr, 0, WriteUsualDump, write, 0, nullptr);
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
    SetEvent(CreateEventW(nullptr, TRUE, FALSE, L"tvut22_bench crashes"));
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
}

void MeasureCrash(const scSettings& settings, clsReport& report) {
    report.Section("Crash protection");
    MeasureFrames(settings, report);
    MeasureNames(settings, report);
    MeasureCrashes(settings, report);
    MeasureStart(settings, report);
}

} // namespace bench
