// A diagnostic line that nobody wants, that goes to the log file, and that goes to a viewer.
//
// A copy of the library decides once whether there is a log file, so each way has a copy of its own.
#include <winsock2.h>

#include "sections.h"

#include <tvut22/diagnostics.h>
#include <tvut22/viewer.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

namespace bench {

namespace {

constexpr int callsQuiet = 200'000;
constexpr int callsHeard = 5'000;

#define BENCH_LINE L"loading report %d of %s: %u rows in %u ms", 17, L"customers.rpt", 1234u, 56u

// The library under another name.
class clsCopy {
  public:
    clsCopy(const std::wstring& folder, const wchar_t* name, const wchar_t* logFile) {
        wchar_t original[MAX_PATH];
        GetModuleFileNameW(GetModuleHandleW(L"tvUT22.dll"), original, MAX_PATH);
        const std::wstring path = folder + name;
        std::filesystem::copy_file(original, path);
        SetEnvironmentVariableW(L"TVUT22_LOG", logFile);
        module_ = LoadLibraryW(path.c_str());
        Require(module_ != nullptr, "a copy of the library cannot be loaded");
        debug = Find<decltype(&UtilDebug)>("UtilDebug");
        attach = Find<decltype(&UtilLOGPAN4Attach)>("UtilLOGPAN4Attach");
        isOn = Find<decltype(&UtilGetFlags)>("UtilGetFlags");
        Require((isOn() != 0) == (logFile != nullptr), "output is on where it should be off, or off");
        SetEnvironmentVariableW(L"TVUT22_LOG", nullptr);
    }
    ~clsCopy() { FreeLibrary(module_); }
    clsCopy(const clsCopy&) = delete;
    clsCopy& operator=(const clsCopy&) = delete;

    decltype(&UtilDebug) debug = nullptr;
    decltype(&UtilLOGPAN4Attach) attach = nullptr;
    decltype(&UtilGetFlags) isOn = nullptr;

  private:
    template <class Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }
    HMODULE module_;
};

template <class Function>
Round EachCall(int calls, Function function) {
    return [=] {
        return Timed([&] {
                   for (int i = 0; i < calls; ++i)
                       function();
               }) /
               calls;
    };
}

void MeasureQuiet(const clsCopy& copy, int rounds, clsReport& report) {
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    const Round contenders[] = {EachCall(callsQuiet, [&] { copy.debug(BENCH_LINE); }),
                                EachCall(callsQuiet, [&] {
                                    for (int pair = 0; pair < 2; ++pair) {
                                        EnterCriticalSection(&section);
                                        LeaveCriticalSection(&section);
                                    }
                                })};
    const auto ns = Race(contenders, rounds);
    report.Against("UtilDebug, nobody listens", ns[0], "two critical-section pairs", ns[1], AtMost(1));
    DeleteCriticalSection(&section);
}

std::string ReadShared(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The library with a log file, the line that it writes, and a file of the same kind for bare writes.
struct scLogFiles {
    explicit scLogFiles(const std::wstring& folder)
        : copy(folder, L"logging.dll", (folder + L"lines.log").c_str()),
          bare(CreateFileW((folder + L"bare.log").c_str(), FILE_APPEND_DATA | SYNCHRONIZE, FILE_SHARE_READ,
                           nullptr, CREATE_ALWAYS, 0, nullptr)) {
        copy.debug(BENCH_LINE);
        line = ReadShared(folder + L"lines.log");
        Require(line.size() > 60 && line.size() < 150, "the log file does not hold the line");
    }
    ~scLogFiles() { CloseHandle(bare); }
    scLogFiles(const scLogFiles&) = delete;
    scLogFiles& operator=(const scLogFiles&) = delete;

    void Write() const { copy.debug(BENCH_LINE); }
    void WriteBare() const {
        DWORD written = 0;
        WriteFile(bare, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    }

    clsCopy copy;
    HANDLE bare;
    std::string line;
};

void MeasureLogFile(const scSettings& settings, clsReport& report) {
    const scLogFiles files(settings.folder);
    const Round contenders[] = {EachCall(callsHeard, [&] { files.Write(); }),
                                EachCall(callsHeard, [&] { files.WriteBare(); })};
    const auto ns = Race(contenders, settings.rounds);
    report.Against("UtilDebug to the log file", ns[0], "WriteFile of the same bytes, appending", ns[1],
                   AtMost(3));
}

// A viewer's socket; what it does not read the system drops.
struct scSocket {
    scSocket() {
        WSADATA data;
        Require(WSAStartup(MAKEWORD(2, 2), &data) == 0, "no socket library");
        handle = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        int size = sizeof address;
        Require(bind(handle, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                    getsockname(handle, reinterpret_cast<sockaddr*>(&address), &size) == 0,
                "no socket");
    }
    ~scSocket() { closesocket(handle); }
    SOCKET handle;
    sockaddr_in address{};
};

void MeasureViewer(const clsCopy& copy, int rounds, clsReport& report) {
    const scSocket viewer, bare;
    const HANDLE mapping =
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 24, LOGPAN_SHARED_INFO_LOCAL);
    *static_cast<LogpanSharedInfo*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0)) = {
        24, ntohs(viewer.address.sin_port), 1, 65507, 0};
    Require(copy.attach(), "the viewer is not found");
    copy.debug(BENCH_LINE);
    char packet[2000];
    const int length = recv(viewer.handle, packet, sizeof packet, 0);
    Require(length > 200, "the viewer got no packet");
    const Round contenders[] = {
        EachCall(callsHeard, [&] { copy.debug(BENCH_LINE); }), EachCall(callsHeard, [&] {
            WSABUF buffer{static_cast<ULONG>(length), packet};
            DWORD sent = 0;
            WSASendTo(bare.handle, &buffer, 1, &sent, 0, reinterpret_cast<const sockaddr*>(&viewer.address),
                      sizeof viewer.address, nullptr, nullptr);
        })};
    const auto ns = Race(contenders, rounds);
    report.Against("UtilDebug to a viewer", ns[0], "WSASendTo of the same bytes", ns[1], AtMost(1.2));
    CloseHandle(mapping);
}

// Nanoseconds a call, over all of them.
template <class Function>
double OnEightThreads(Function function) {
    constexpr int threads = 8;
    return Timed([&] {
               std::vector<std::jthread> running;
               for (int thread = 0; thread < threads; ++thread) {
                   running.emplace_back([&] {
                       for (int i = 0; i < callsHeard; ++i)
                           function();
                   });
               }
           }) /
           (threads * callsHeard);
}

} // namespace

void MeasureCrowdOfLines(const scSettings& settings, clsReport& report) {
    const scLogFiles files(settings.folder);
    const Round contenders[] = {[&] { return OnEightThreads([&] { files.Write(); }); },
                                [&] { return OnEightThreads([&] { files.WriteBare(); }); }};
    const auto ns = Race(contenders, std::min(settings.rounds, 11));
    report.Against("UtilDebug to the log file, eight threads", ns[0], "WriteFile of the same bytes", ns[1],
                   AtMost(1));
}

void MeasureDiagnostics(const scSettings& settings, clsReport& report) {
    const clsCopy copy(settings.folder, L"quiet.dll", nullptr);
    report.Section("Diagnostics: a line of two numbers and a text");
    MeasureQuiet(copy, settings.rounds, report);
    MeasureLogFile(settings, report);
    MeasureViewer(copy, settings.rounds, report);
}

} // namespace bench
