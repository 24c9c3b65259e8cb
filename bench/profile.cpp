// Enumerations that several sections need to find lists and to check that work was done.
#include "profile.h"

#include "workload.h"

namespace bench {

namespace {

BOOL TVUT22_CALL CollectList(ProfJob, const wchar_t*, const wchar_t*, ProfList list, UINT_PTR user) {
    reinterpret_cast<std::vector<ProfList>*>(user)->push_back(list);
    return TRUE;
}

BOOL TVUT22_CALL CountEntry(ProfJob, const wchar_t*, const wchar_t*, ProfList, UINT_PTR user) {
    ++*reinterpret_cast<std::size_t*>(user);
    return TRUE;
}

} // namespace

std::vector<ProfList> ListsOf(ProfJob job) {
    std::vector<ProfList> lists;
    Require(ProfEnumW(job, nullptr, CollectList, reinterpret_cast<UINT_PTR>(&lists)) != FALSE,
            "the lists could not be enumerated");
    return lists;
}

std::size_t EntriesOf(ProfJob job, ProfList list) {
    std::size_t count = 0;
    Require(ProfEnumW(job, list, CountEntry, reinterpret_cast<UINT_PTR>(&count)) != FALSE,
            "a list could not be enumerated");
    return count;
}

void RequireWork(ProfJob job) {
    const auto lists = ListsOf(job);
    Require(lists.size() == listsOfWork, "the profile does not hold its 1,000 lists");
    for (const ProfList list : lists)
        Require(EntriesOf(job, list) == itemsOfList, "a list does not hold its 100 items");
}

} // namespace bench
