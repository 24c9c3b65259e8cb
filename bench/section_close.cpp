// Closing the opened work, against freeing the same tree elsewhere.
#include "files.h"
#include "peers.h"
#include "profile.h"
#include "sections.h"
#include "workload.h"

#include <memory>

namespace bench {

namespace {

double CloseProfile(const std::wstring& path) {
    clsJob job(path);
    return Timed([&] { job.Close(); });
}

double ClearXml(const std::wstring& xml) {
    clsRapidXml document(xml);
    document.ParseWithoutDataNodes();
    return Timed([&] { document.Clear(); });
}

double DestroyIni(const std::wstring& path) {
    auto ini = std::make_unique<clsSimpleIni>();
    Require(ini->LoadFile(path), "simpleini did not read the work");
    return Timed([&] { ini.reset(); });
}

double DestroyVectors(const Work& work) {
    auto copy = std::make_unique<Work>(work);
    return Timed([&] { copy.reset(); });
}

} // namespace

void MeasureClose(const scSettings& settings, clsReport& report) {
    const Work work = MakeWork();
    const scWorkFiles files = WriteWork(settings.folder);
    const std::wstring xml = ReadWholeText(files.xml);

    const Round rounds[] = {
        [&] { return CloseProfile(files.profile); },
        [&] { return DestroyVectors(work); },
        [&] { return DestroyIni(files.ini); },
        [&] { return ClearXml(xml); },
    };
    const auto ns = Race(rounds, settings.rounds);

    report.Section("Close: the opened work");
    report.Against("ProfJobClose", ns[0], "std::vector of pairs of wstring", ns[1]);
    report.Against("ProfJobClose", ns[0], "simpleini CSimpleIniCaseW", ns[2]);
    report.Against("ProfJobClose", ns[0], "rapidxml, its pool only", ns[3]);
}

} // namespace bench
