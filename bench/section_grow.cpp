// Setting and appending N new items: what a call costs must not depend on how long the list already is.
#include "profile.h"
#include "sections.h"
#include "workload.h"

#include <array>
#include <string>
#include <unordered_map>

namespace bench {

namespace {

constexpr std::array<std::size_t, 4> sizes = {1000, 10000, 100000, 300000};

using Store = void(TVUT22_CALL*)(ProfJob, ProfList, const wchar_t*, INT);

// Walks all names once whatever the size, in as many new containers as it takes, so that every size
// does the same work on the same texts. Result: nanoseconds a name; making and freeing not counted.
template <typename Container, typename Add, typename Count>
double PerName(const clsNames& names, std::size_t size, Add&& add, Count&& count) {
    double ns = 0;
    for (std::size_t first = 0; first < names.size(); first += size) {
        Container container;
        ns += Timed([&] {
            for (std::size_t index = first; index < first + size; ++index)
                add(container, names[index], static_cast<int>(index));
        });
        Require(count(container) == size, "not every item was added");
    }
    return ns / static_cast<double>(names.size());
}

double GrowProfile(const clsNames& names, std::size_t size, Store store) {
    return PerName<clsJob>(
        names, size,
        [store](const clsJob& job, const wchar_t* name, int value) { store(job, nullptr, name, value); },
        [](const clsJob& job) { return EntriesOf(job, nullptr); });
}

double GrowMap(const clsNames& names, std::size_t size) {
    using Map = std::unordered_map<std::wstring, int>;
    return PerName<Map>(
        names, size, [](Map& map, const wchar_t* name, int value) { map.insert_or_assign(name, value); },
        [](const Map& map) { return map.size(); });
}

void ReportCall(clsReport& report, const char* call, const std::vector<double>& ours,
                const std::vector<double>& map) {
    for (std::size_t index = 0; index < sizes.size(); ++index)
        report.Against(std::string(call) + ", N = " + std::to_string(sizes[index]), ours[index],
                       "std::unordered_map", map[index]);
    report.Spread(std::string(call) + ", dearest N", ours, AtMost(1.35));
}

} // namespace

void MeasureGrow(const scSettings& settings, clsReport& report) {
    const clsNames names(0, sizes.back());
    std::vector<Round> rounds;
    for (const std::size_t size : sizes)
        rounds.push_back([&names, size] { return GrowProfile(names, size, ProfSetIntW); });
    for (const std::size_t size : sizes)
        rounds.push_back([&names, size] { return GrowProfile(names, size, ProfAppendIntW); });
    for (const std::size_t size : sizes)
        rounds.push_back([&names, size] { return GrowMap(names, size); });
    const auto ns = Race(rounds, settings.rounds);

    const auto group = [&ns](std::size_t index) {
        const auto first = ns.begin() + static_cast<std::ptrdiff_t>(index * sizes.size());
        return std::vector<double>(first, first + static_cast<std::ptrdiff_t>(sizes.size()));
    };
    report.Section("Grow: N new items, a call");
    ReportCall(report, "ProfSetIntW", group(0), group(2));
    ReportCall(report, "ProfAppendIntW", group(1), group(2));
    report.Remark("Each N adds the same 300,000 names, 300,000 / N new profiles of N items.");
}

} // namespace bench
