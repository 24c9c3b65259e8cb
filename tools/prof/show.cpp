// prof show: a profile for reading, as a tree or as flat lines.
#include "commands.h"
#include "flat_lines.h"
#include "json_commands.h"
#include "paint.h"
#include "paths.h"
#include "text_io.h"
#include "tree_walk.h"

#include <algorithm>

namespace tool::prof {

namespace {

// Deeper entries stay at this indentation and show their level: indenting each line by its depth would
// turn a deep profile into an output of the square of its size.
constexpr std::size_t deepestIndentation = 32;

void AppendIndentation(std::string& line, std::size_t depth) {
    line.append(2 * std::min(depth, deepestIndentation), ' ');
    if (depth > deepestIndentation)
        line += std::to_string(depth) + "> ";
}

void AppendEntry(std::string& line, const scEntry& entry) {
    line += BeginPaint(entry.IsList() ? Paint::list : Paint::name);
    if (entry.IsList())
        line += '[';
    AppendEscaped(line, entry.name);
    if (entry.IsList())
        line += ']';
    line += EndPaint();
    if (!entry.IsList())
        line += '=';
    AppendEscaped(line, entry.value);
}

void ShowTree(clsTreeWalk& walk) {
    std::string line;
    while (walk.Next()) {
        line.clear();
        AppendIndentation(line, walk.Entry().depth);
        AppendEntry(line, walk.Entry());
        clsOutput::Standard().WriteLine(line);
    }
}

} // namespace

ExitCode RunShow(const scArguments& arguments) {
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    const ProfList start = FindList(profile, arguments.file, arguments.path);
    if (arguments.json) {
        PrintJsonList(profile, start, arguments);
        return ExitCode::ok;
    }
    clsTreeWalk walk{profile.Job(), start, clsTreeWalk::Scope::wholeTree};
    const bool isRoot = arguments.path.empty() || arguments.path == "/";
    if (arguments.flat)
        ShowFlat(walk, isRoot ? Names{} : NamesInPath(ToWide(arguments.path)));
    else
        ShowTree(walk);
    return ExitCode::ok;
}

} // namespace tool::prof
