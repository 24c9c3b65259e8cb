// prof delete: takes items or lists out of a profile and saves it. What is to go is known, and there, before
// the first of it goes.
#include "commands.h"
#include "edited_ini.h"
#include "edited_profile.h"
#include "matches.h"
#include "paths.h"
#include "text_io.h"

#include <set>

namespace tool::prof {

namespace {

[[noreturn]] void Refuse(const scArguments& arguments, const std::string& path) {
    throw scFailure{ExitCode::notFound, DisplayName(arguments.file),
                    (arguments.list ? "there is no list " : "there is no item ") + path};
}

void RequireDeletablePath(const scArguments& arguments, const std::string& path) {
    RequirePath(path);
    if (arguments.list && path == "/")
        throw scFailure{ExitCode::usage, "", "the root list cannot be deleted"};
}

// The names that one path stands for. Throws Failure when there is nothing of them.
std::set<Names> NamesOf(ProfJob job, const scArguments& arguments, const std::string& path) {
    const std::wstring widePath = ToWide(path);
    std::set<Names> found;
    if (IsPattern(widePath)) {
        for (scMatch& match : MatchesOf(job, widePath))
            if ((match.list != nullptr) == arguments.list)
                found.insert(std::move(match.names));
    } else if ((arguments.list ? ReachesList : ReachesItem)(job, NamesInPath(widePath))) {
        found.insert(NamesInPath(widePath));
    }
    if (found.empty())
        Refuse(arguments, path);
    return found;
}

std::set<Names> AllNames(ProfJob job, const scArguments& arguments) {
    std::set<Names> all;
    for (const std::string& path : arguments.paths)
        all.merge(NamesOf(job, arguments, path));
    return all;
}

// One path is the library's; for many it would go through the profile as many times.
void Delete(clsEditedProfile& profile, const std::set<Names>& paths, bool lists) {
    if (const auto path = paths.size() == 1 ? LibraryPath(*paths.begin()) : std::nullopt)
        return (lists ? ProfDeleteListW : ProfDeleteItemW)(profile.Job(), nullptr, path->c_str());
    clsProfileTree tree{profile.Profile()};
    lists ? tree.DeleteLists(paths) : tree.DeleteItems(paths);
    profile.Become(tree.ToProfile());
}

ExitCode DeleteInIni(const scArguments& arguments) {
    clsEditedIni ini{arguments};
    const std::set<Names> paths = AllNames(ini.Job(), arguments);
    arguments.list ? ini.DeleteLists(paths) : ini.DeleteItems(paths);
    ini.Save();
    return ExitCode::ok;
}

} // namespace

ExitCode RunDelete(const scArguments& arguments) {
    for (const std::string& path : arguments.paths)
        RequireDeletablePath(arguments, path);
    if (IsIniChangedInPlace(arguments))
        return DeleteInIni(arguments);
    clsEditedProfile profile{arguments, Replaceable::textProfiles};
    Delete(profile, AllNames(profile.Job(), arguments), arguments.list);
    profile.SaveAsText();
    return ExitCode::ok;
}

} // namespace tool::prof
