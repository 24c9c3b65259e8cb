// The XML and XFDF forms of the work: opening against rapidxml, saving against the text form.
#include "files.h"
#include "peers.h"
#include "profile.h"
#include "sections.h"
#include "workload.h"

namespace bench {

namespace {

double Open(const std::wstring& path, bool verify) {
    ProfJob job = nullptr;
    const double ns = Timed([&] { job = ProfJobOpenW(path.c_str()); });
    Require(job != nullptr && ProfGetError(job) == PROF_OK, "ProfJobOpenW failed");
    if (verify)
        RequireWork(job);
    ProfJobClose(job);
    return ns;
}

double ParseXml(const std::wstring& xml) {
    clsRapidXml document(xml);
    const double ns = Timed([&] { document.ParseDefault(); });
    Require(document.CountItems() == itemsOfWork, "rapidxml did not read the work");
    return ns;
}

double Save(ProfJob job, const std::wstring& path, UINT form) {
    const double ns =
        Timed([&] { Require(ProfSaveW(job, path.c_str(), form) == PROF_OK, "ProfSaveW failed"); });
    RemoveFile(path);
    return ns;
}

// What no way to save a form can be faster than: a file of as many bytes as the library has saved there.
Round BareSaveOf(ProfJob job, const std::wstring& path, UINT form) {
    Require(ProfSaveW(job, path.c_str(), form) == PROF_OK, "ProfSaveW failed");
    return [path, bytes = ReadWholeFile(path)] {
        const double ns = Timed([&] { BareSave(path, bytes); });
        RemoveFile(path);
        return ns;
    };
}

} // namespace

void MeasureXml(const scSettings& settings, clsReport& report) {
    const scWorkFiles files = WriteWork(settings.folder);
    const clsJob job(files.profile);
    const std::wstring path = settings.folder + L"form.xml";
    Require(ProfSaveW(job, path.c_str(), PROF_FORM_XML) == PROF_OK, "ProfSaveW failed");
    const std::wstring xml = ReadWholeText(path).substr(1); // rapidxml knows no byte-order mark in UTF-16
    Open(path, true);

    const std::wstring to = settings.folder + L"new.";
    const Round rounds[] = {
        [&] { return Open(path, false); },
        [&] { return ParseXml(xml); },
        [&] { return Save(job, to + L"prf", PROF_FORM_TEXT); },
        [&] { return Save(job, to + L"xml", PROF_FORM_XML); },
        [&] { return Save(job, to + L"xfdf", PROF_FORM_XFDF); },
        BareSaveOf(job, to + L"bare-xml", PROF_FORM_XML),
        BareSaveOf(job, to + L"bare-xfdf", PROF_FORM_XFDF),
    };
    const auto ns = Race(rounds, settings.rounds);

    report.Section("XML and XFDF: 1,000 lists of 100 items");
    report.Against("ProfJobOpenW, XML", ns[0], "rapidxml, default flags", ns[1], AtMost(0.9));
    report.Against("ProfSaveW, XML", ns[3], "ProfSaveW, text", ns[2], AtMost(1.25));
    report.Against("ProfSaveW, XFDF", ns[4], "ProfSaveW, text", ns[2], AtMost(1.25));
    report.Against("ProfSaveW, XML", ns[3], "bare: write beside, rename", ns[5]);
    report.Against("ProfSaveW, XFDF", ns[4], "bare: write beside, rename", ns[6]);
    report.Remark(
        "rapidxml: parse<> in place of the same file, which is in memory. Saving goes to new names. "
        "Bare: the least that saves as many bytes, which is 1.7 times the text form's for XML.");
}

} // namespace bench
