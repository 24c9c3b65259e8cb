// tvut22_soak: keeps the library under load for as long as it is asked to, and reports what has gone wrong.
//
//     tvut22_soak kills --seconds 600 --seed 7 --folder Z:\tmp\kills
//
// scripts/soak runs all workloads. The same seed makes the same choices; what processes and threads do
// meanwhile differs from run to run.
#include "workloads.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <map>

namespace {

struct scWorkload {
    void (*run)(soak::clsRun& run);
    const char* does;
};

const std::map<std::string, scWorkload> workloads = {
    {"archives", {soak::RunArchives, "processes that are killed while they pack and unpack"}},
    {"crowd", {soak::RunCrowd, "8 threads on everything at once, and ExitProcess at any moment"}},
    {"heaps", {soak::RunHeaps, "8 threads on the checked heaps, with damage"}},
    {"kills", {soak::RunKills, "processes that are killed while they save"}},
    {"loading", {soak::RunLoading, "copies of the library that come and go"}},
    {"low-memory", {soak::RunLowMemory, "hardly any address space left"}},
    {"small-disk", {soak::RunSmallDisk, "a disk that is full at any moment"}},
};

const std::map<std::string, int (*)(std::span<char*>)> parts = {{"play-crowd", soak::PlayCrowd},
                                                                {"play-packer", soak::PlayPacker},
                                                                {"play-saver", soak::PlaySaver},
                                                                {"play-unpacker", soak::PlayUnpacker}};

int Run(const std::string& name, const soak::scPlan& plan) {
    std::filesystem::create_directories(plan.folder);
    std::filesystem::current_path(plan.folder);
    soak::clsRun run(plan);
    try {
        workloads.at(name).run(run);
    } catch (const std::exception& error) {
        run.Found(error.what());
    }
    return run.Report(name.c_str()) == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && parts.contains(argv[1]))
        return parts.at(argv[1])(std::span(argv + 2, argv + argc));
    CLI::App app("Keeps the library under load, and reports what has gone wrong.", "tvut22_soak");
    soak::scPlan plan;
    for (const auto& [name, workload] : workloads)
        app.add_subcommand(name, workload.does)->fallthrough();
    app.require_subcommand(1);
    app.add_option("--seconds", plan.seconds, "How long")->capture_default_str();
    app.add_option("--seed", plan.seed, "Which choices are made")->capture_default_str();
    app.add_option("--folder", plan.folder, "Where it works, and what is found stays; a folder of its own");
    CLI11_PARSE(app, argc, argv);
    const std::string workload = app.get_subcommands().front()->get_name();
    if (plan.folder.empty())
        plan.folder = std::filesystem::temp_directory_path() / ("tvut22_soak_" + workload);
    return Run(workload, plan);
}
