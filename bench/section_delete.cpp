// Deleting the items of a long list one by one, in three orders.
#include "profile.h"
#include "sections.h"
#include "workload.h"

#include <algorithm>
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
}

} // namespace bench
