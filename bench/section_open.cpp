// Opening the work: a file that the system has in its cache, to a finished tree.
#include "files.h"
#include "peers.h"
#include "profile.h"
#include "sections.h"
#include "workload.h"

namespace bench {

namespace {

double OpenProfile(const std::wstring& path, bool verify) {
    ProfJob job = nullptr;
    const double ns = Timed([&] { job = ProfJobOpenW(path.c_str()); });
    Require(job != nullptr, "ProfJobOpenW gave no job");
    const bool opened = ProfGetError(job) == PROF_OK;
    if (opened && verify)
        RequireWork(job);
    ProfJobClose(job);
    Require(opened, "ProfJobOpenW failed");
    return ns;
}

double ParseXml(const std::wstring& xml, void (clsRapidXml::*parse)()) {
    clsRapidXml document(xml);
    const double ns = Timed([&] { (document.*parse)(); });
    Require(document.CountItems() == itemsOfWork, "rapidxml did not read the work");
    return ns;
}

double LoadIni(const std::wstring& path) {
    clsSimpleIni ini;
    bool loaded = false;
    const double ns = Timed([&] { loaded = ini.LoadFile(path); });
    Require(loaded && ini.CountItems() == itemsOfWork, "simpleini did not read the work");
    return ns;
}

} // namespace

void MeasureOpen(const scSettings& settings, clsReport& report) {
    const scWorkFiles files = WriteWork(settings.folder);
    const std::wstring xml = ReadWholeText(files.xml);
    std::vector<std::byte> buffer = ReadWholeFile(files.profile);
    OpenProfile(files.profile, true);

    const Round rounds[] = {
        [&] { return OpenProfile(files.profile, false); },
        [&] { return ParseXml(xml, &clsRapidXml::ParseWithoutDataNodes); },
        [&] { return ParseXml(xml, &clsRapidXml::ParseDefault); },
        [&] { return LoadIni(files.ini); },
        [&] { return Timed([&] { BareRead(files.profile, buffer); }); },
    };
    const auto ns = Race(rounds, settings.rounds);

    report.Section("Open: 1,000 lists of 100 items");
    report.Against("ProfJobOpenW", ns[0], "rapidxml, no data nodes", ns[1], AtMost(1));
    report.Against("ProfJobOpenW", ns[0], "rapidxml, default flags", ns[2]);
    report.FasterThan("ProfJobOpenW", ns[0], "simpleini CSimpleIniCaseW", ns[3], AtLeast(4));
    report.Against("ProfJobOpenW", ns[0], "bare: one ReadFile", ns[4]);
    report.Remark(
        "ProfJobOpenW: from the file's name to the finished tree; closing is measured apart. rapidxml: "
        "parse<> in place of the same tree as UTF-16 XML that is in memory, without the reading of a "
        "file or the copy it destroys; without data nodes it keeps each value once, in its element. "
        "simpleini: LoadFile of the same lists as UTF-8 sections, its only file encoding. Bare: "
        "CreateFile, one ReadFile of the profile into a warm buffer, CloseHandle.");
}

} // namespace bench
