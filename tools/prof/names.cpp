// prof lists and prof items: what is in one list.
#include "commands.h"
#include "json_commands.h"
#include "paths.h"
#include "text_io.h"
#include "tree_walk.h"

namespace tool::prof {

namespace {

template <typename PrintJson, typename Print>
ExitCode PrintList(const scArguments& arguments, PrintJson printJson, Print print) {
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    const ProfList list = FindList(profile, arguments.file, arguments.path);
    if (arguments.json) {
        printJson(profile, list, arguments);
        return ExitCode::ok;
    }
    std::string line;
    for (clsTreeWalk walk{profile.Job(), list, clsTreeWalk::Scope::oneList}; walk.Next();) {
        line.clear();
        if (print(line, walk.Entry()))
            clsOutput::Standard().WriteLine(line);
    }
    return ExitCode::ok;
}

} // namespace

ExitCode RunLists(const scArguments& arguments) {
    return PrintList(arguments, PrintJsonNames, [](std::string& line, const scEntry& entry) {
        AppendEscaped(line, entry.name);
        return entry.IsList();
    });
}

ExitCode RunItems(const scArguments& arguments) {
    return PrintList(arguments, PrintJsonItems, [](std::string& line, const scEntry& entry) {
        AppendEscaped(line, entry.name);
        line += '=';
        AppendEscaped(line, entry.value);
        return !entry.IsList();
    });
}

} // namespace tool::prof
