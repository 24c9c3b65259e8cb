// prof check: loads a profile and says what it holds; opening reports the error line when it fails.
#include "commands.h"
#include "profile.h"
#include "text_io.h"
#include "tree_walk.h"

namespace tool::prof {

ExitCode runCheck(const Arguments& arguments) {
    const Profile profile = Profile::open(arguments.file, arguments.plainIni);
    std::size_t lists = 0;
    std::size_t items = 0;
    for (TreeWalk walk{profile.job(), nullptr, TreeWalk::Scope::wholeTree}; walk.next();)
        ++(walk.entry().isList() ? lists : items);
    Output::standard().writeLine(displayName(arguments.file) + ": good, lists: " + std::to_string(lists) +
                                 ", items: " + std::to_string(items));
    return ExitCode::ok;
}

} // namespace tool::prof
