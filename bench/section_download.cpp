// Files from a server on this machine, against the system's own call for it, which checks nothing. The server
// is that of the tests, which runs the benchmark.
#include "machine.h"
#include "sections.h"

#include <tvut22/download.h>

#include <windows.h>

#include <urlmon.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>

namespace bench {

namespace {

constexpr std::size_t largeBytes = 64 * 1024 * 1024;
constexpr std::size_t smallFiles = 200;
constexpr std::size_t probedBytes = 1024 * 1024, largeProbedBytes = 1024 * probedBytes;

void Ours(const std::wstring& address, const std::wstring& file) {
    Require(UtilDownloadFile(address.c_str(), file.c_str(), nullptr) == UTIL_OK, "a download failed");
}

// With an address of its own each time, since this one asks its cache first.
void Systems(const std::wstring& address, const std::wstring& file) {
    static int count = 0;
    const std::wstring own = address + L"?" + std::to_wstring(++count);
    Require(URLDownloadToFileW(nullptr, own.c_str(), file.c_str(), 0, nullptr) == S_OK,
            "the system's download failed");
}

BOOL TVUT22_CALL Cancel(ULONGLONG, ULONGLONG, UINT_PTR user) {
    LARGE_INTEGER& cancelled = *reinterpret_cast<LARGE_INTEGER*>(user);
    static int calls = 0;
    QueryPerformanceCounter(&cancelled);
    return ++calls % 3 != 0; // when the request is under way
}

// From the callback's 0 to the return of the call.
double Cancelling(const std::wstring& address, const std::wstring& file) {
    LARGE_INTEGER cancelled{}, returned{}, frequency{};
    UtilDownloadOptions options{};
    options.size = sizeof options;
    options.callback = Cancel;
    options.user = reinterpret_cast<UINT_PTR>(&cancelled);
    Require(UtilDownloadFile(address.c_str(), file.c_str(), &options) == UTIL_CANCELLED,
            "a silent server answered");
    QueryPerformanceCounter(&returned);
    QueryPerformanceFrequency(&frequency);
    return 1e9 * static_cast<double>(returned.QuadPart - cancelled.QuadPart) /
           static_cast<double>(frequency.QuadPart);
}

std::size_t CommittedBytesOf(const void* allocation) {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region;
    for (const auto* at = static_cast<const std::byte*>(allocation);
         VirtualQuery(at, &region, sizeof region) != 0 && region.AllocationBase == allocation;
         at += region.RegionSize)
        bytes += region.State == MEM_COMMIT ? region.RegionSize : 0;
    return bytes;
}

// Of threads: they have a guard page. How much of them is committed is each system's matter.
std::size_t StackBytes() {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region;
    for (const std::byte* at = nullptr; VirtualQuery(at, &region, sizeof region) != 0;
         at = static_cast<const std::byte*>(region.BaseAddress) + region.RegionSize)
        if (region.State == MEM_COMMIT && (region.Protect & PAGE_GUARD) != 0)
            bytes += CommittedBytesOf(region.AllocationBase);
    return bytes;
}

// Threads may begin and end meanwhile.
std::size_t BytesBesideStacks() {
    const std::size_t before = StackBytes(), all = CommittedPrivateBytes(), after = StackBytes();
    return all - std::min(all, std::max(before, after));
}

// The most memory that the process has while it lives, looked at by a thread of its own.
class clsMemoryWatch {
  public:
    clsMemoryWatch() : watch_([this] { Watch(); }) {
        WaitForSingleObject(watches_, INFINITE);
        before_ = BytesBesideStacks();
    }
    ~clsMemoryWatch() {
        End();
        CloseHandle(watches_);
    }
    clsMemoryWatch(const clsMemoryWatch&) = delete;
    clsMemoryWatch& operator=(const clsMemoryWatch&) = delete;

    std::size_t Added() {
        End();
        return std::max<std::size_t>(most_, before_) - before_;
    }

  private:
    void Watch() {
        SetEvent(watches_);
        while (!ends_) {
            most_ = std::max<std::size_t>(most_, BytesBesideStacks());
            Sleep(1);
        }
    }
    void End() {
        ends_ = true;
        if (watch_.joinable())
            watch_.join();
    }

    HANDLE watches_ = CreateEventW(nullptr, TRUE, FALSE, nullptr); // with a stack of its own
    std::atomic<bool> ends_{false};
    std::atomic<std::size_t> most_{0};
    std::size_t before_ = 0;
    std::thread watch_; // last: it uses the others
};

std::wstring Server() {
    const wchar_t* const root = _wgetenv(L"TVUT22_HTTP");
    Require(root != nullptr, "tests/download/server.py does not run the benchmark");
    return root;
}

void MeasureTransferMemory(const scSettings& settings, clsReport& report) {
    const auto bytes = [&](const wchar_t* way) {
        return static_cast<double>(RunMemoryProbe(way, settings.folder + L"probed"));
    };
    const double ours = bytes(L"download"), service = bytes(L"download-service");
    constexpr double most = 256 * 1024;
    report.Bytes("memory for 1 MiB beside the service's own and the stacks", std::max(0.0, ours - service),
                 "256 KiB", most, AtMost(most));
    if (!settings.quick)
        report.Bytes("memory for 1 GiB", bytes(L"download-large"), "for 1 MiB", ours, AtMost(ours + 65536));
}

} // namespace

// After a transfer that has loaded all that one needs, so that libraries do not count.
std::size_t ProbeDownload(const std::string& way, const std::wstring& file) {
    const auto bytes = way == "download-large" ? largeProbedBytes : probedBytes;
    const auto transfer = [&](std::size_t count) {
        (way == "download-service" ? Systems : Ours)(Server() + L"/bytes/" + std::to_wstring(count), file);
    };
    transfer(1);
    clsMemoryWatch watch;
    transfer(bytes);
    DeleteFileW(file.c_str());
    return watch.Added();
}

void MeasureDownload(const scSettings& settings, clsReport& report) {
    report.Section("Downloads");
    const std::wstring server = Server(), file = settings.folder + L"download";
    const auto race = [&](const std::wstring& path, std::size_t times) {
        const Round rounds[] = {
            [&] { return PerCall(times, [&](std::size_t) { Ours(server + path, file); }); },
            [&] { return PerCall(times, [&](std::size_t) { Systems(server + path, file); }); },
        };
        return Race(rounds, std::min(settings.rounds, 5)); // seconds each
    };
    const auto large = race(L"/bytes/" + std::to_wstring(largeBytes), 1);
    report.Against("64 MiB", large[0], "URLDownloadToFile", large[1], AtMost(2.5));
    report.Against("64 MiB", large[0], "50 MB/s", 1e9 * static_cast<double>(largeBytes) / 50e6, AtMost(1));
    const auto small = race(L"/bytes/2048", smallFiles);
    report.Against("a file of 2 KB", small[0], "URLDownloadToFile", small[1], AtMost(1.5));
    const Round cancelling[] = {[&] { return Cancelling(server + L"/silent", file); }};
    report.Against("end a silent transfer", Race(cancelling, settings.rounds)[0], "200 ms", 200e6, AtMost(1));
    DeleteFileW(file.c_str());
    MeasureTransferMemory(settings, report);
}

} // namespace bench
