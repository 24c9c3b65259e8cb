// prof lists and prof items: what is in one list.
#include "commands.h"
#include "paths.h"
#include "text_io.h"
#include "tree_walk.h"

namespace tool::prof {

namespace {

template <typename Print>
ExitCode printList(const Arguments& arguments, Print print) {
    const Profile profile = Profile::open(arguments.file, arguments.plainIni);
    const ProfList list = findList(profile, arguments.file, arguments.path);
    std::string line;
    for (TreeWalk walk{profile.job(), list, TreeWalk::Scope::oneList}; walk.next();) {
        line.clear();
        if (print(line, walk.entry()))
            Output::standard().writeLine(line);
    }
    return ExitCode::ok;
}

} // namespace

ExitCode runLists(const Arguments& arguments) {
    return printList(arguments, [](std::string& line, const Entry& entry) {
        appendEscaped(line, entry.name);
        return entry.isList();
    });
}

ExitCode runItems(const Arguments& arguments) {
    return printList(arguments, [](std::string& line, const Entry& entry) {
        appendEscaped(line, entry.name);
        line += '=';
        appendEscaped(line, entry.value);
        return !entry.isList();
    });
}

} // namespace tool::prof
