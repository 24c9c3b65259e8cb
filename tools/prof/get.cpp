// prof get: values, as they are or as the library reads them.
#include "commands.h"
#include "flat_lines.h"
#include "json_commands.h"
#include "matches.h"
#include "paths.h"
#include "text_io.h"
#include "value_types.h"

namespace tool::prof {

namespace {

std::string Typed(const scArguments& arguments, const clsTypedReader& reader, const std::string& path,
                  const std::wstring& value) {
    std::optional<std::string> text = reader.Read(value);
    if (!text)
        throw scFailure{ExitCode::wrongType, DisplayName(arguments.file),
                        "the value of " + path + " is not of type " + arguments.type};
    return *std::move(text);
}

// What one path leads to. Throws Failure with notFound.
std::vector<scMatch> ItemsOf(const clsProfile& profile, const scArguments& arguments,
                             const std::string& path) {
    const std::wstring widePath = ToWide(path);
    std::vector<scMatch> found;
    if (IsPattern(widePath)) {
        found = MatchesOf(profile.Job(), widePath);
        std::erase_if(found, [](const scMatch& match) { return match.list != nullptr; });
    } else if (std::optional<std::wstring> value = FindItem(profile.Job(), NamesInPath(widePath))) {
        found.push_back({NamesInPath(widePath), *std::move(value), nullptr});
    }
    if (found.empty())
        throw scFailure{ExitCode::notFound, DisplayName(arguments.file), "there is no item " + path};
    return found;
}

ExitCode GetOne(const clsProfile& profile, const scArguments& arguments) {
    const std::string& path = arguments.paths.front();
    const bool usesFallback = arguments.fallback && !FindItem(profile.Job(), NamesInPath(ToWide(path)));
    const clsTypedReader reader{ValueType(arguments.type)};
    const std::string text =
        usesFallback ? *arguments.fallback
                     : Typed(arguments, reader, path, ItemsOf(profile, arguments, path).front().value);
    if (arguments.json)
        PrintJsonValue(text, arguments);
    else
        clsOutput::Standard().WriteLine(text);
    return ExitCode::ok;
}

} // namespace

ExitCode RunGet(const scArguments& arguments) {
    for (const std::string& path : arguments.paths)
        RequirePath(path);
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    if (arguments.paths.size() == 1 && !IsPattern(ToWide(arguments.paths.front())))
        return GetOne(profile, arguments);
    for (const auto& [isGiven, option] :
         {std::pair{arguments.fallback.has_value(), "--default"}, std::pair{arguments.json, "--json"}})
        if (isGiven)
            throw scFailure{ExitCode::usage, option, "goes with one path without * and ?"};
    const clsTypedReader reader{ValueType(arguments.type)};
    std::vector<scMatch> found;
    for (const std::string& path : arguments.paths)
        for (scMatch& match : ItemsOf(profile, arguments, path)) {
            match.value = ToWide(Typed(arguments, reader, ToUtf8(PathOf(match.names)), match.value));
            found.push_back(std::move(match));
        }
    for (const scMatch& match : found)
        PrintFlatItem(match.names, match.value);
    return ExitCode::ok;
}

} // namespace tool::prof
