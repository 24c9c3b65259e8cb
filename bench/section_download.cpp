// Files from a server on this machine, against the system's own call for it, which checks nothing. The server
// is that of the tests, which runs the benchmark.
#include "sections.h"

#include <tvut22/download.h>

#include <windows.h>

#include <urlmon.h>

#include <algorithm>
#include <string>

namespace bench {

namespace {

constexpr std::size_t largeBytes = 64 * 1024 * 1024;
constexpr std::size_t smallFiles = 200;

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

} // namespace

void MeasureDownload(const scSettings& settings, clsReport& report) {
    report.Section("Downloads");
    const wchar_t* const root = _wgetenv(L"TVUT22_HTTP");
    Require(root != nullptr, "tests/download/server.py does not run the benchmark");
    const std::wstring server = root, file = settings.folder + L"download";
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
}

} // namespace bench
