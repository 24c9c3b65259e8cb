// Saving the work to a new name and over an existing file, against the bare system calls.
#include "files.h"
#include "profile.h"
#include "sections.h"

#include <algorithm>

namespace bench {

namespace {

// Each contender has a target of its own: none finds what another has left in the cache.
struct scTargets {
    std::wstring oursNew, oursOver, bareNew, bareOver;
};

void Save(ProfJob job, const std::wstring& path) {
    Require(ProfSaveW(job, path.c_str(), PROF_FORM_TEXT) == PROF_OK, "ProfSaveW failed");
}

template <typename SaveTo>
double TimedToNewName(const std::wstring& path, SaveTo&& save) {
    const double ns = Timed(save);
    RemoveFile(path);
    return ns;
}

} // namespace

void MeasureSave(const scSettings& settings, clsReport& report) {
    const scWorkFiles files = WriteWork(settings.folder);
    const clsJob job(files.profile);
    const auto bytes = ReadWholeFile(files.profile);

    const scTargets to = {settings.folder + L"new.prf", settings.folder + L"over.prf",
                          settings.folder + L"bare-new.prf", settings.folder + L"bare-over.prf"};
    Save(job, to.oursOver);
    Require(std::ranges::equal(ReadWholeFile(to.oursOver), bytes), "ProfSaveW did not write the text form");
    WriteWholeFile(to.bareOver, bytes);

    const Round rounds[] = {
        [&] { return TimedToNewName(to.oursNew, [&] { Save(job, to.oursNew); }); },
        [&] { return TimedToNewName(to.bareNew, [&] { BareSave(to.bareNew, bytes); }); },
        [&] { return Timed([&] { Save(job, to.oursOver); }); },
        [&] { return Timed([&] { BareSave(to.bareOver, bytes); }); },
    };
    const auto ns = Race(rounds, settings.rounds);

    report.Section("Save: 1,000 lists of 100 items");
    report.Against("ProfSaveW to a new name", ns[0], "bare: write beside, rename", ns[1], AtMost(1.6));
    report.Against("ProfSaveW over a file", ns[2], "bare: write beside, rename", ns[3], AtMost(1.2));
    report.Remark("Bare: CreateFile of a temporary file beside the target, one WriteFile of the same bytes "
                  "from memory, CloseHandle, MoveFileEx that may replace.");
}

} // namespace bench
