// The clock, the interleaved rounds and the median.
#include "harness.h"

#include <windows.h>

#include <algorithm>

namespace bench {

namespace {

double NsPerTick() {
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return 1e9 / static_cast<double>(frequency.QuadPart);
}

volatile std::size_t sink;

} // namespace

double NowNs() {
    static const double nsPerTick = NsPerTick();
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    return static_cast<double>(ticks.QuadPart) * nsPerTick;
}

void Consume(std::size_t value) {
    sink = value;
}

double Median(std::vector<double> samples) {
    Require(!samples.empty(), "a median of nothing");
    std::ranges::sort(samples);
    const std::size_t middle = samples.size() / 2;
    return samples.size() % 2 != 0 ? samples[middle] : (samples[middle - 1] + samples[middle]) / 2;
}

std::vector<double> Race(std::span<const Round> contenders, int rounds) {
    const std::size_t count = contenders.size();
    std::vector<std::vector<double>> samples(count);
    for (int round = -1; round < rounds; ++round) {
        // Each starts a round in its turn: being the first after the others' garbage is a handicap.
        for (std::size_t turn = 0; turn < count; ++turn) {
            const std::size_t which = (turn + static_cast<std::size_t>(round + 1)) % count;
            const double ns = contenders[which]();
            if (round >= 0)
                samples[which].push_back(ns);
        }
    }
    std::vector<double> medians;
    for (auto& sample : samples)
        medians.push_back(Median(std::move(sample)));
    return medians;
}

} // namespace bench
