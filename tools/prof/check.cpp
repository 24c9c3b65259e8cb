// prof check: loads a profile and says what it holds; opening reports the error line when it fails.
#include "commands.h"
#include "profile.h"
#include "text_io.h"
#include "tree_walk.h"

namespace tool::prof {

ExitCode RunCheck(const scArguments& arguments) {
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    std::size_t lists = 0;
    std::size_t items = 0;
    for (clsTreeWalk walk{profile.Job(), nullptr, clsTreeWalk::Scope::wholeTree}; walk.Next();)
        ++(walk.Entry().IsList() ? lists : items);
    clsOutput::Standard().WriteLine(DisplayName(arguments.file) + ": good, lists: " + std::to_string(lists) +
                                    ", items: " + std::to_string(items));
    return ExitCode::ok;
}

} // namespace tool::prof
