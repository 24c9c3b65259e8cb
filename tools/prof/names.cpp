// prof lists and prof items: what is in one list.
#include "commands.h"
#include "flat_lines.h"
#include "json_commands.h"
#include "matches.h"
#include "paths.h"
#include "text_io.h"
#include "tree_walk.h"

namespace tool::prof {

namespace {

bool AppendItem(std::string& line, const scEntry& entry) {
    AppendEscaped(line, entry.name);
    line += '=';
    AppendEscaped(line, entry.value);
    return !entry.IsList();
}

template <typename Print>
ExitCode PrintList(const clsProfile& profile, ProfList list, Print print) {
    std::string line;
    for (clsTreeWalk walk{profile.Job(), list, clsTreeWalk::Scope::oneList}; walk.Next();) {
        line.clear();
        if (print(line, walk.Entry()))
            clsOutput::Standard().WriteLine(line);
    }
    return ExitCode::ok;
}

void PrintItems(const clsProfile& profile, const scMatch& match) {
    Names names = match.names;
    names.emplace_back();
    for (clsTreeWalk walk{profile.Job(), match.list, clsTreeWalk::Scope::oneList}; walk.Next();)
        if (!walk.Entry().IsList()) {
            names.back() = walk.Entry().name;
            PrintFlatItem(names, walk.Entry().value);
        }
}

// The lists of one path. Throws Failure with notFound.
std::vector<scMatch> ListsOf(const clsProfile& profile, const scArguments& arguments,
                             const std::string& path) {
    const std::wstring widePath = ToWide(path);
    if (!IsPattern(widePath)) {
        const bool isRoot = path.empty() || path == "/";
        return {{isRoot ? Names{} : NamesInPath(widePath), {}, FindList(profile, arguments.file, path)}};
    }
    std::vector<scMatch> found = MatchesOf(profile.Job(), widePath);
    std::erase_if(found, [](const scMatch& match) { return match.list == nullptr; });
    if (found.empty())
        throw scFailure{ExitCode::notFound, DisplayName(arguments.file), "there is no list " + path};
    return found;
}

} // namespace

ExitCode RunLists(const scArguments& arguments) {
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    const ProfList list = FindList(profile, arguments.file, arguments.path);
    if (arguments.json) {
        PrintJsonNames(profile, list);
        return ExitCode::ok;
    }
    return PrintList(profile, list, [](std::string& line, const scEntry& entry) {
        AppendEscaped(line, entry.name);
        return entry.IsList();
    });
}

ExitCode RunItems(const scArguments& arguments) {
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    const std::string first = arguments.paths.empty() ? std::string{} : arguments.paths.front();
    if (arguments.paths.size() < 2 && !IsPattern(ToWide(first))) {
        const ProfList list = FindList(profile, arguments.file, first);
        if (!arguments.json)
            return PrintList(profile, list, AppendItem);
        PrintJsonItems(profile, list, arguments);
        return ExitCode::ok;
    }
    if (arguments.json)
        throw scFailure{ExitCode::usage, "--json", "goes with one path without * and ?"};
    std::vector<scMatch> found;
    for (const std::string& path : arguments.paths)
        for (scMatch& match : ListsOf(profile, arguments, path))
            found.push_back(std::move(match));
    for (const scMatch& match : found)
        PrintItems(profile, match);
    return ExitCode::ok;
}

} // namespace tool::prof
