// tvut22_bench: measures the library through its exports against peers in the same run.
//
// Speed is never a test: the exit code is 0 whatever the figures are, and 1 only when a figure could
// not be made.
#include "files.h"
#include "machine.h"
#include "sections.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>

namespace {

using namespace bench;

struct scSection {
    const char* name;
    void (*measure)(const scSettings&, clsReport&);
};

constexpr std::string_view crowds = "crowds"; // measured only when it is asked for

constexpr scSection sections[] = {
    {"start", MeasureModuleStart}, {"open", MeasureOpen},
    {"save", MeasureSave},         {"memory", MeasureMemory},
    {"get", MeasureGet},           {"grow", MeasureGrow},
    {"delete", MeasureDelete},     {"xml", MeasureXml},
    {"walk", MeasureWalk},         {"close", MeasureClose},
    {"strings", MeasureStrings},   {"base64", MeasureBase64},
    {"embed", MeasureEmbed},       {"diagnostics", MeasureDiagnostics},
    {"heap", MeasureHeap},         {"handles", MeasureHandles},
    {"files", MeasureFiles},       {"locale", MeasureLocale},
    {"security", MeasureSecurity}, {"crash", MeasureCrash},
    {"pool", MeasurePool},         {"stack", MeasureStack},
    {"window", MeasureWindow},     {"html", MeasureHtml},
    {"regex", MeasureRegEx},       {"docinfo", MeasureDocInfo},
    {"download", MeasureDownload}, {"zip", MeasureZip},
    {"crowds", MeasureCrowds},
};

struct scCommandLine {
    std::vector<std::string> only;
    std::vector<std::string> probe;
    std::vector<std::string> crash;
    bool markdown = false;
    scSettings settings;
};

bool Chosen(const scCommandLine& line, std::string_view name) {
    if (line.only.empty())
        return name != crowds;
    return std::ranges::find(line.only, name) != line.only.end();
}

// The exit code is the answer: the bytes added, or -1.
int AnswerProbe(const std::vector<std::string>& probe) {
    try {
        const std::wstring path(probe[1].begin(), probe[1].end());
        return static_cast<int>(ProbeMemory(probe[0], path));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tvut22_bench: %s\n", error.what());
        return -1;
    }
}

// A busy machine's figures are shown, but a goal is neither met nor missed there.
void LookAtMachine(clsReport& report) {
    const double noise = Noise();
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", noise);
    report.Remark(ProcessorName() + "; the same work takes " + text + " times its least on average" +
                  (noise > mostNoise ? ": the machine is busy, goals are not judged." : "."));
    if (noise > mostNoise)
        report.JudgeNothing();
}

bool MeasureAll(const scCommandLine& line) {
    clsReport report(line.markdown);
    LookAtMachine(report);
    bool complete = true;
    for (const auto& section : sections) {
        if (!Chosen(line, section.name))
            continue;
        try {
            section.measure(line.settings, report);
        } catch (const std::exception& error) {
            report.Failed(section.name, error.what());
            complete = false;
        }
    }
    report.Summary();
    return complete;
}

int Run(scCommandLine& line) {
    try {
        const clsScratchFolder scratch;
        line.settings.folder = scratch.Path();
        return MeasureAll(line) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tvut22_bench: %s\n", error.what());
        return 1;
    }
}

} // namespace

int main(int argc, char** argv) {
    scCommandLine line;
    std::vector<std::string> names;
    for (const auto& section : sections)
        names.emplace_back(section.name);

    CLI::App app("Measures tvUT22 against peers in the same run.", "tvut22_bench");
    app.add_option("--only", line.only, "Sections to measure, separated by commas")
        ->delimiter(',')
        ->check(CLI::IsMember(names));
    app.add_flag("--quick", line.settings.quick, "Few rounds: shows that everything runs, figures are rough");
    app.add_flag("--markdown", line.markdown, "Print the tables of docs/performance.md");
    app.add_option("--rounds", line.settings.rounds, "Rounds that count, of each contender")
        ->check(CLI::Range(1, 1000));
    app.add_option("--probe-memory", line.probe)->expected(2)->group("");
    app.add_option("--crash", line.crash)->expected(2)->group("");
    CLI11_PARSE(app, argc, argv);

    if (!line.crash.empty())
        CrashAs(line.crash[0], {line.crash[1].begin(), line.crash[1].end()});
    if (!line.probe.empty())
        return AnswerProbe(line.probe);
    if (line.settings.quick)
        line.settings.rounds = std::min(line.settings.rounds, 3);
    return Run(line);
}
