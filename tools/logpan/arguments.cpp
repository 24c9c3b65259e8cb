// The options, declared to the argument parser.
#include "arguments.h"

#include "parse_arguments.h"
#include "text_io.h"

#include <CLI/CLI.hpp>

namespace tool::logpan {

namespace {

constexpr const char* hint = "Try 'logpan --help'.";
constexpr const char* footer =
    "Without --console or --json a window opens; the filter then stands in its boxes.\n"
    "In the console mode without files, standard error says \"listening on port N\" once lines can come,\n"
    "and how many came when it ends. Ctrl+C ends it, and so does closing the pipe it writes to.\n"
    "Exit codes: 0 done, 2 wrong usage, 3 cannot listen (another logpan runs) or read, 5 cannot write,\n"
    "            7 out of memory.\n";

void Declare(CLI::App& app, scArguments& arguments) {
    app.add_flag("--console", arguments.console, "Print lines to standard output; no window");
    app.add_flag("--json", arguments.json, "The same, each line a JSON object in UTF-8");
    app.add_option("--filter", arguments.filter,
                   "Show only lines whose text or module has this; case is ignored");
    app.add_option("--exclude", arguments.exclude, "Do not show lines that have this");
    app.add_flag("--regex", arguments.regularExpressions, "Both are regular expressions (ECMAScript)");
    app.add_option("--only", arguments.only,
                   "Show only such lines: \"severity=warning,error module=A,!B thread=1b0 process=x.exe\"");
    app.add_option("FILE", arguments.files,
                   "Shows these instead of what programs write: saved lines, log files or any text");
    app.add_option("--settings", arguments.settings, "Where the window keeps its settings");
    app.add_option("--max-lines", arguments.maxLines, "End after this number of printed lines")
        ->check(CLI::PositiveNumber);
    app.add_option("--exit-after", arguments.exitAfter, "End after this number of seconds; not with files")
        ->check(CLI::Range(0.0, 1e9));
    app.add_option("--capacity", arguments.capacity, "Lines held in memory; older ones are dropped")
        ->check(CLI::Range(1, 10'000'000))
        ->capture_default_str();
    app.add_option("--memory", arguments.megabytes, "Megabytes that they may take")
        ->check(CLI::Range(1, 1024))
        ->capture_default_str();
    app.add_option("--datagram", arguments.datagram, "Bytes of the largest datagram that senders may send")
        ->check(CLI::Range(512, 65507))
        ->capture_default_str();
}

[[noreturn]] void Refuse(const char* reason) {
    throw scFailure{ExitCode::usage, "", std::string{reason} + "\n" + hint};
}

scFilterText ParseOnly(const std::string& text) {
    try {
        return ParseFilter(ToWide(text));
    } catch (const scBadPattern& bad) {
        throw scFailure{ExitCode::usage, "--only", bad.reason};
    }
}

void SetOnce(std::wstring& value, const std::string& text, const char* option) {
    if (!text.empty() && !value.empty())
        throw scFailure{ExitCode::usage, option, "--only has such a text already"};
    if (!text.empty())
        value = ToWide(text);
}

void CheckPattern(const std::wstring& text, PatternKind kind, const char* option) {
    try {
        clsPattern(text, kind);
    } catch (const scBadPattern& bad) {
        throw scFailure{ExitCode::usage, option, bad.reason};
    }
}

} // namespace

std::optional<scArguments> ParseCommandLine(std::vector<std::string> words) {
    scArguments arguments;
    CLI::App app{"Shows the diagnostic lines of programs as they are written.", "logpan"};
    app.set_version_flag("--version", "logpan " LOGPAN_VERSION);
    app.footer(footer);
    Declare(app, arguments);
    if (!ParseArguments(app, std::move(words), hint))
        return std::nullopt;
    arguments.console = arguments.console || arguments.json;
    if (!arguments.console && (arguments.maxLines > 0 || arguments.exitAfter))
        Refuse("--max-lines and --exit-after need --console or --json");
    if (!arguments.files.empty() && arguments.exitAfter)
        Refuse("--exit-after is for what programs write now, not for files");
    return arguments;
}

scFilterText FilterTextOf(const scArguments& arguments) {
    scFilterText filter = ParseOnly(arguments.only);
    SetOnce(filter.include, arguments.filter, "--filter");
    SetOnce(filter.exclude, arguments.exclude, "--exclude");
    if (arguments.regularExpressions)
        filter.kind = PatternKind::regularExpression;
    CheckPattern(filter.include, filter.kind, "--filter");
    CheckPattern(filter.exclude, filter.kind, "--exclude");
    return filter;
}

} // namespace tool::logpan
