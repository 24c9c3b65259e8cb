#include "run.h"

#include <cstdio>

namespace soak {

namespace {

constexpr int mostPrinted = 20;

} // namespace

clsRun::clsRun(const scPlan& plan)
    : end_(GetTickCount64() + static_cast<ULONGLONG>(plan.seconds) * 1000), random_(plan.seed) {}

void clsRun::Found(const std::string& what) {
    if (++found_ <= mostPrinted)
        std::fprintf(stderr, "found: %s\n", what.c_str());
}

void clsRun::Keep(const std::filesystem::path& file) const {
    std::error_code none;
    std::filesystem::create_directory("found", none);
    std::filesystem::rename(
        file, std::filesystem::path("found") / (std::to_string(found_) + "-" + file.filename().string()),
        none);
}

int clsRun::Report(const char* workload) const {
    std::printf("%s:", workload);
    for (const auto& [what, count] : figures_)
        std::printf(" %lld %s,", count, what.c_str());
    std::printf(" %d found\n", found_);
    return found_;
}

} // namespace soak
