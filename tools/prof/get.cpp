// prof get: one value, as it is or as the library reads it.
#include "commands.h"
#include "json_commands.h"
#include "paths.h"
#include "text_io.h"
#include "value_types.h"

namespace tool::prof {

namespace {

bool Exists(const clsProfile& profile, const std::wstring& path) {
    return ProfGetStringLengthW(profile.Job(), nullptr, path.c_str()) >= 0;
}

} // namespace

ExitCode RunGet(const scArguments& arguments) {
    RequirePath(arguments.path);
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    const std::wstring path = ToWide(arguments.path);
    if (!Exists(profile, path))
        throw scFailure{ExitCode::notFound, DisplayName(arguments.file),
                        "there is no item " + arguments.path};
    std::string text;
    if (ValueType(arguments.type).fetch(profile.Job(), path.c_str(), text) != PROF_OK)
        throw scFailure{ExitCode::wrongType, DisplayName(arguments.file),
                        "the value of " + arguments.path + " is not of type " + arguments.type};
    if (arguments.json)
        PrintJsonValue(text, arguments);
    else
        clsOutput::Standard().WriteLine(text);
    return ExitCode::ok;
}

} // namespace tool::prof
