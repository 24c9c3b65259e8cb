// tvut22_traffic: writes diagnostic lines as a large product does, to see whether they all arrive.
//
// Four modules, eight threads, groups of lines that nest. A line names its thread, its number in the
// thread and the length of its filling, so that whoever reads it knows whether it is whole:
//
//     <3 1234 17 ................. 3>
//
// Meanwhile modules may come and go on threads of their own, which write lines about themselves, too.
//
// Where the lines go is for the caller to set up: a log file (TVUT22_LOG) or a viewer that runs. The rate
// is for viewers, whose sockets hold only a little.
#include <tvut22/util.h>

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const wchar_t* modules[] = {L"REPORT", L"PRINT", L"DATA", L"VIEW"};
constexpr int linesOfGroup = 10; // a head, what belongs to it, and an end

struct scPlan {
    int lines = 1'000'000;
    int threads = 8;
    int modules = 0; // threads on which modules come and go
    double rate = 0; // lines a second; 0: as fast as they go
};

int LevelChange(int line) {
    const int place = line % linesOfGroup;
    return place == 0 ? 1 : place == linesOfGroup - 1 ? -1 : 0;
}

void WriteLines(int thread, int lines, double rate) {
    static constexpr wchar_t filling[] =
        L"......................................................................";
    const auto start = Clock::now();
    for (int line = 0; line < lines; ++line) {
        const int length = (line * 7 + thread) % 70;
        UtilDebugExt(modules[thread % std::size(modules)], LevelChange(line), L"<%d %d %d %.*s %d>", thread,
                     line, length, length, filling, thread);
        if (rate > 0 && line % linesOfGroup == 0)
            std::this_thread::sleep_until(start + std::chrono::duration<double>(line / rate));
    }
}

void ComeAndGo(const std::stop_token& end) {
    while (!end.stop_requested()) {
        UtilModuleOnAttach(L"module");
        UtilModuleOnDetach(L"module");
        UtilLOGPAN4Detach();
    }
}

void Write(const scPlan& plan) {
    std::vector<UtilJob> jobs;
    for (const wchar_t* const module : modules) {
        UtilModuleOnAttach(module);
        jobs.push_back(UtilJobOpen(module, 0));
    }
    {
        std::vector<std::jthread> comers, threads; // those that write end first
        for (int module = 0; module < plan.modules; ++module)
            comers.emplace_back(ComeAndGo);
        for (int thread = 0; thread < plan.threads; ++thread)
            threads.emplace_back(WriteLines, thread, plan.lines / plan.threads, plan.rate / plan.threads);
    }
    for (const UtilJob job : jobs)
        UtilJobClose(job);
    for (const wchar_t* const module : modules)
        UtilModuleOnDetach(module);
}

} // namespace

int main(int argc, char** argv) {
    scPlan plan;
    CLI::App app("Writes diagnostic lines as a large product does.", "tvut22_traffic");
    app.add_option("--lines", plan.lines, "Lines in all, without those of modules that come and go");
    app.add_option("--threads", plan.threads, "Threads that share them")->check(CLI::Range(1, 64));
    app.add_option("--modules", plan.modules, "Threads on which modules come and go meanwhile")
        ->check(CLI::Range(0, 64));
    app.add_option("--rate", plan.rate, "At most this number of lines a second, of all threads");
    CLI11_PARSE(app, argc, argv);
    if (!UtilLOGPAN4Attach() && !UtilGetFlags()) {
        std::fprintf(stderr, "nobody listens: start a viewer, or name a log file in TVUT22_LOG\n");
        return 1;
    }
    const auto start = Clock::now();
    Write(plan);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    std::printf("%d lines in %.2f s: %.0f a second\n", plan.lines, seconds, plan.lines / seconds);
}
