// The memory that an opened profile adds to its process, in a fresh process each: in an older one the
// blocks that were freed before would take up the tree and hide it.
#include "files.h"
#include "machine.h"
#include "peers.h"
#include "processes.h"
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

} // namespace

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
    return ExitCodeOf(Quoted(PathOfModule(nullptr)) + L" --probe-memory " + way + L" " + Quoted(path));
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
