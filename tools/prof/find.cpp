// prof find: where a text occurs in names and values.
#include "commands.h"
#include "flat_lines.h"
#include "text_io.h"
#include "tree_walk.h"

#include <windows.h>

namespace tool::prof {

namespace {

// Without regard to case, as the system compares the names of files, whatever the language.
bool Holds(std::wstring_view text, std::wstring_view part) {
    return FindStringOrdinal(FIND_FROMSTART, text.data(), static_cast<int>(text.size()), part.data(),
                             static_cast<int>(part.size()), TRUE) >= 0;
}

} // namespace

ExitCode RunFind(const scArguments& arguments) {
    const std::wstring text = ToWide(arguments.value);
    if (text.empty())
        throw scFailure{ExitCode::usage, "", "the text to find is empty"};
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    bool isFound = false;
    Names names;
    for (clsTreeWalk walk{profile.Job(), nullptr, clsTreeWalk::Scope::wholeTree}; walk.Next();) {
        const scEntry& entry = walk.Entry();
        names.resize(entry.depth);
        names.emplace_back(entry.name);
        if (!Holds(entry.name, text) && !Holds(entry.value, text))
            continue;
        isFound = true;
        if (entry.IsList())
            PrintFlatList(names);
        else
            PrintFlatItem(names, entry.value);
    }
    return isFound ? ExitCode::ok : ExitCode::notFound;
}

} // namespace tool::prof
