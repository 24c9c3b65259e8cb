// Reading one integer by its path, in lists of every size, against a hash map that is asked the way
// callers ask: with a NUL-terminated text.
#include "profile.h"
#include "sections.h"
#include "workload.h"

#include <array>
#include <string>
#include <unordered_map>

namespace bench {

namespace {

using Map = std::unordered_map<std::wstring, int>;

constexpr std::size_t sizes[] = {10, 100, 1000, 10000, 100000};

// The same items in a profile, below the path that the names begin with, and in a map whose keys are
// those names whole.
struct scBoth {
    clsJob job;
    Map map;
};

// One after the other: interleaved, each would find its items spread over the other's memory.
void Fill(scBoth& both, const clsNames& names) {
    const auto value = [](std::size_t index) { return static_cast<int>(index * 7919 % 100000); };
    for (std::size_t index = 0; index < names.size(); ++index)
        ProfAppendIntW(both.job, nullptr, names[index], value(index));
    for (std::size_t index = 0; index < names.size(); ++index)
        both.map.emplace(names[index], value(index));
}

// What `calls` look-ups cost, each; the names are asked for in turn.
template <typename Lookup>
double PerCall(std::size_t calls, const clsNames& names, Lookup&& lookup) {
    std::size_t sum = 0;
    const double ns = Timed([&] {
        for (std::size_t done = 0; done < calls;)
            for (std::size_t index = 0; index < names.size() && done < calls; ++index, ++done)
                sum += static_cast<std::size_t>(lookup(names[index]));
    });
    Consume(sum);
    return ns / static_cast<double>(calls);
}

int AskProfile(ProfJob job, ProfList list, const wchar_t* path) {
    INT value;
    ProfGetIntW(job, list, path, &value, 1);
    return value;
}

int AskMap(const Map& map, const wchar_t* key) {
    const auto found = map.find(key);
    return found == map.end() ? 1 : found->second;
}

void RequireSameAnswers(const scBoth& both, ProfList list, const clsNames& present, const clsNames& missing) {
    for (const clsNames* names : {&present, &missing})
        for (std::size_t index = 0; index < names->size(); ++index)
            Require(AskProfile(both.job, list, (*names)[index]) == AskMap(both.map, (*names)[index]),
                    "ProfGetIntW and the map disagree");
}

// Present and missing names of lists of one size, all below the same path.
void MeasureSize(const scSettings& settings, clsReport& report, std::size_t size, const std::wstring& prefix,
                 const std::string& shape) {
    clsNames present(0, size, prefix);
    clsNames missing(size, size, prefix);
    scBoth both;
    Fill(both, present);
    present.Shuffle();
    missing.Shuffle();
    RequireSameAnswers(both, nullptr, present, missing);

    const std::size_t calls = settings.quick ? 10000 : 100000;
    const auto profile = [&](const wchar_t* path) { return AskProfile(both.job, nullptr, path); };
    const auto map = [&](const wchar_t* key) { return AskMap(both.map, key); };
    const Round rounds[] = {
        [&] { return PerCall(calls, present, profile); },
        [&] { return PerCall(calls, present, map); },
        [&] { return PerCall(calls, missing, profile); },
        [&] { return PerCall(calls, missing, map); },
    };
    const auto ns = Race(rounds, settings.rounds);
    const scGoal goal = AtMost(size <= 1000 ? 1.5 : 2);
    const std::string peer = "std::unordered_map";
    report.Against(std::to_string(size) + shape + ", present", ns[0], peer, ns[1], goal);
    report.Against(std::to_string(size) + shape + ", missing", ns[2], peer, ns[3], goal);
}

} // namespace

void MeasureGet(const scSettings& settings, clsReport& report) {
    report.Section("Get: ProfGetIntW by path");
    for (const std::size_t size : sizes)
        MeasureSize(settings, report, size, L"", " items");
    for (const std::size_t size : {std::size_t{10}, std::size_t{1000}, std::size_t{100000}})
        MeasureSize(settings, report, size, L"Reports/Weekly/", " items two lists deep");
    report.Remark("A call each, names in random order. The map is std::unordered_map<std::wstring, int> "
                  "asked with a const wchar_t*; two lists deep its keys are the whole paths.");
}

} // namespace bench
