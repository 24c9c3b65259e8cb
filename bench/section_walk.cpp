// Going over the whole work: enumerating it and copying it, against vectors of pairs of std::wstring.
#include "files.h"
#include "profile.h"
#include "sections.h"
#include "workload.h"

#include <cwchar>

namespace bench {

namespace {

using Visit = BOOL(TVUT22_CALL*)(ProfJob, const wchar_t*, const wchar_t*, ProfList, UINT_PTR);

// Touches both texts as a caller would that looks for something.
BOOL TVUT22_CALL Look(ProfJob, const wchar_t* name, const wchar_t* value, ProfList, UINT_PTR user) {
    *reinterpret_cast<std::size_t*>(user) += static_cast<std::size_t>(*name) + *value;
    return TRUE;
}

double EnumerateProfile(ProfJob job, const std::vector<ProfList>& lists) {
    std::size_t sum = 0;
    const double ns = Timed([&] {
        for (const ProfList list : lists)
            ProfEnumW(job, list, Look, reinterpret_cast<UINT_PTR>(&sum));
    });
    Consume(sum);
    return ns / itemsOfWork;
}

double EnumerateVectors(const Work& work, Visit volatile& visit) {
    std::size_t sum = 0;
    const double ns = Timed([&] {
        for (const auto& list : work)
            for (const auto& [name, value] : list.items)
                visit(nullptr, name.c_str(), value.c_str(), nullptr, reinterpret_cast<UINT_PTR>(&sum));
    });
    Consume(sum);
    return ns / itemsOfWork;
}

double CopyProfile(ProfJob source) {
    const clsJob copy;
    const double ns = Timed(
        [&] { Require(ProfCopyList(copy, nullptr, source, nullptr) == PROF_OK, "ProfCopyList failed"); });
    Require(EntriesOf(copy, nullptr) == listsOfWork, "ProfCopyList did not copy every list");
    return ns / itemsOfWork;
}

double CopyVectors(const Work& source) {
    Work copy;
    const double ns = Timed([&] { copy = source; });
    Consume(copy.size());
    return ns / itemsOfWork;
}

} // namespace

void MeasureWalk(const scSettings& settings, clsReport& report) {
    const Work work = MakeWork();
    const clsJob job(WriteWork(settings.folder).profile);
    const auto lists = ListsOf(job);
    Visit volatile visit = Look; // volatile: the peer calls through a pointer as the library does

    const Round rounds[] = {
        [&] { return EnumerateProfile(job, lists); },
        [&] { return EnumerateVectors(work, visit); },
        [&] { return CopyProfile(job); },
        [&] { return CopyVectors(work); },
    };
    const auto ns = Race(rounds, settings.rounds);

    report.Section("Walk: the opened work, an item");
    report.Against("ProfEnumW", ns[0], "std::vector, a callback each", ns[1]);
    report.Against("ProfCopyList into another job", ns[2], "std::vector, copied", ns[3]);
}

} // namespace bench
