// The memory that an opened profile adds to its process, in a fresh process each: in an older one the
// blocks that were freed before would take up the tree and hide it.
#include "files.h"
#include "peers.h"
#include "profile.h"
#include "sections.h"
#include "workload.h"

#include <cstdint>
#include <windows.h>

#include <psapi.h>

namespace bench {

namespace {

template <typename Open>
std::size_t Added(Open&& open) {
    const std::size_t before = CommittedPrivateBytes();
    [[maybe_unused]] const auto opened = open();
    return CommittedPrivateBytes() - before;
}

std::wstring OwnPath() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

} // namespace

std::size_t CommittedPrivateBytes() {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region;
    for (std::uintptr_t address = 0;
         VirtualQuery(reinterpret_cast<void*>(address), &region, sizeof region) != 0;) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE)
            bytes += region.RegionSize;
        const std::uintptr_t next = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
        if (next <= address)
            break;
        address = next;
    }
    return bytes;
}

std::size_t ProbeMemory(const std::string& way, const std::wstring& path) {
    if (way == "profile")
        return Added([&] { return clsJob(path); });
    if (way == "simpleini")
        return Added([&] {
            auto ini = std::make_unique<clsSimpleIni>();
            Require(ini->LoadFile(path), "simpleini did not read the work");
            return ini;
        });
    if (way == "embed")
        return ProbeEmbedding(path);
    if (way == "zip")
        return ProbeZip(path);
    if (way == "document")
        return ProbeDocument(path);
    if (way == "documents")
        return Added([&] { return OpenManyDocuments(path); });
    if (way == "temporary") {
        const auto files = MakeManyFiles(path, 10000);
        return Added([&] {
            RegisterTempFiles(files);
            return 0;
        });
    }
    if (way == "waiting") {
        AddWaitingJobs(1); // the system's thread is there
        return Added([] { return AddWaitingJobs(waitingJobs), 0; });
    }
    if (way == "pools")
        return Added([] { return OpenIdlePools(idlePools), 0; });
    if (way.starts_with("download"))
        return ProbeDownload(way, path);
    if (way == "jobs")
        return BytesKeptAfterJobs();
    Require(way == "rapidxml", "there is no such way to open the work");
    return Added([&] {
        auto document = std::make_unique<clsRapidXml>(ReadWholeText(path));
        document->ParseWithoutDataNodes();
        return document;
    });
}

std::size_t PeakMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    Require(K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) != FALSE,
            "the process's memory cannot be asked for");
    return counters.PeakWorkingSetSize;
}

// Runs this program with --probe-memory; its exit code is the answer, negative when it failed.
std::size_t RunMemoryProbe(const wchar_t* way, const std::wstring& path) {
    std::wstring command = L"\"" + OwnPath() + L"\" --probe-memory " + way + L" \"" + path + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    Require(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                           &process) != FALSE,
            "the memory probe could not be started");
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD bytes = 0;
    GetExitCodeProcess(process.hProcess, &bytes);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    Require(bytes < 0x80000000u, "the memory probe failed");
    return bytes;
}

void MeasureMemory(const scSettings& settings, clsReport& report) {
    const scWorkFiles files = WriteWork(settings.folder);
    const auto perItem = [](const wchar_t* way, const std::wstring& path) {
        return static_cast<double>(RunMemoryProbe(way, path)) / itemsOfWork;
    };
    const double ours = perItem(L"profile", files.profile);
    report.Section("Memory: what the opened work adds, an item");
    report.Bytes("ProfJobOpenW", ours, "rapidxml, text included", perItem(L"rapidxml", files.xml),
                 AtMost(75));
    report.Bytes("ProfJobOpenW", ours, "simpleini CSimpleIniCaseW", perItem(L"simpleini", files.ini));
    report.Remark("Committed private bytes of a fresh process after less before, by VirtualQuery.");
}

} // namespace bench
