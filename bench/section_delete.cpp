// Deleting the entries of a long list one by one: in three orders, by name, by handle, from the front.
#include "profile.h"
#include "sections.h"
#include "workload.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <unordered_map>

namespace bench {

namespace {

constexpr std::size_t itemsOfLongList = 10000;

using Order = std::vector<std::size_t>;

double DeleteFromProfile(const clsNames& names, const Order& order) {
    const clsJob job;
    for (std::size_t index = 0; index < names.size(); ++index)
        ProfAppendIntW(job, nullptr, names[index], static_cast<INT>(index));
    const double ns = Timed([&] {
        for (const std::size_t index : order)
            ProfDeleteItemW(job, nullptr, names[index]);
    });
    Require(EntriesOf(job, nullptr) == 0, "not every item was deleted");
    return ns / static_cast<double>(order.size());
}

double DeleteFromMap(const clsNames& names, const Order& order) {
    std::unordered_map<std::wstring, int> map;
    for (std::size_t index = 0; index < names.size(); ++index)
        map.emplace(names[index], static_cast<int>(index));
    const double ns = Timed([&] {
        for (const std::size_t index : order)
            map.erase(names[index]);
    });
    Require(map.empty(), "not every item was deleted");
    return ns / static_cast<double>(order.size());
}

// ---- What a deletion costs must not depend on how long the list is --------------------------------

constexpr std::size_t sizes[] = {1000, 10000, 100000};

// A profile whose root holds entries of that many names, twice each, and the handles of those that are lists.
struct scTwice {
    clsJob job;
    std::vector<ProfList> handles;
};

void AddTwice(scTwice& profile, const clsNames& names, bool lists) {
    for (std::size_t index = 0; index < 2 * names.size(); ++index) {
        const wchar_t* const name = names[index % names.size()];
        if (lists)
            profile.handles.push_back(ProfAppendListW(profile.job, nullptr, name));
        else
            ProfAppendIntW(profile.job, nullptr, name, static_cast<INT>(index));
    }
}

double DeleteByName(const clsNames& names) {
    scTwice profile;
    AddTwice(profile, names, false);
    const double ns = Timed([&] {
        for (std::size_t index = 0; index < names.size(); ++index)
            ProfDeleteItemW(profile.job, nullptr, names[index]);
    });
    Require(EntriesOf(profile.job, nullptr) == 0, "not every item was deleted");
    return ns / static_cast<double>(names.size());
}

double DeleteByHandle(const clsNames& names) {
    scTwice profile;
    AddTwice(profile, names, true);
    ProfGetListW(profile.job, nullptr, names[0]);
    const double ns = Timed([&] {
        for (const ProfList list : profile.handles)
            ProfDeleteListW(profile.job, list, nullptr);
    });
    Require(EntriesOf(profile.job, nullptr) == 0, "not every list was deleted");
    return ns / static_cast<double>(profile.handles.size());
}

double DeleteFirstItems(const clsNames& names, bool afterLists) {
    scTwice profile;
    if (afterLists)
        AddTwice(profile, names, true);
    const std::size_t lists = EntriesOf(profile.job, nullptr);
    AddTwice(profile, names, false);
    const double ns = Timed([&] {
        for (std::size_t index = 0; index < 2 * names.size(); ++index)
            ProfDeleteListW(profile.job, nullptr, nullptr);
    });
    Require(EntriesOf(profile.job, nullptr) == lists, "not every item was deleted");
    return ns / static_cast<double>(2 * names.size());
}

void MeasureLengths(const scSettings& settings, clsReport& report) {
    const struct {
        const char* work;
        double (*measure)(const clsNames&);
    } ways[] = {
        {"ProfDeleteItemW, each name twice", DeleteByName},
        {"ProfDeleteListW by handle, each name twice", DeleteByHandle},
        {"ProfDeleteListW of list 0, null path",
         [](const clsNames& names) { return DeleteFirstItems(names, false); }},
        {"the same after as many empty lists",
         [](const clsNames& names) { return DeleteFirstItems(names, true); }},
    };
    report.Section("Delete: 1,000, 10,000 and 100,000 names, a call");
    for (const auto& way : ways) {
        std::vector<Round> rounds;
        for (const std::size_t size : sizes)
            rounds.push_back([measure = way.measure, names = std::make_shared<clsNames>(0, size)] {
                return measure(*names);
            });
        report.Spread(std::string(way.work) + ", dearest", Race(rounds, settings.rounds), AtMost(4));
    }
}

} // namespace

void MeasureDelete(const scSettings& settings, clsReport& report) {
    const clsNames names(0, itemsOfLongList);
    Order forward(itemsOfLongList);
    std::iota(forward.begin(), forward.end(), std::size_t{0});
    Order backward(forward.rbegin(), forward.rend());
    Order shuffled = forward;
    std::ranges::shuffle(shuffled, std::mt19937(1871));

    report.Section("Delete: 10,000 items of one list, a call");
    const std::pair<const char*, const Order*> orders[] = {
        {"first to last", &forward}, {"last to first", &backward}, {"in random order", &shuffled}};
    for (const auto& [name, order] : orders) {
        const Round rounds[] = {
            [&, order = order] { return DeleteFromProfile(names, *order); },
            [&, order = order] { return DeleteFromMap(names, *order); },
        };
        const auto ns = Race(rounds, settings.rounds);
        report.Against(std::string("ProfDeleteItemW ") + name, ns[0], "std::unordered_map (keeps no order)",
                       ns[1]);
    }
    MeasureLengths(settings, report);
}

} // namespace bench
