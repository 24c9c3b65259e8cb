// prof get: one value, as it is or as the library reads it.
#include "commands.h"
#include "paths.h"
#include "text_io.h"
#include "value_types.h"

namespace tool::prof {

namespace {

bool exists(const Profile& profile, const std::wstring& path) {
    return ProfGetStringLengthW(profile.job(), nullptr, path.c_str()) >= 0;
}

} // namespace

ExitCode runGet(const Arguments& arguments) {
    requirePath(arguments.path);
    const Profile profile = Profile::open(arguments.file, arguments.plainIni);
    const std::wstring path = toWide(arguments.path);
    if (!exists(profile, path))
        throw Failure{ExitCode::notFound, displayName(arguments.file), "there is no item " + arguments.path};
    std::string text;
    if (valueType(arguments.type).fetch(profile.job(), path.c_str(), text) != PROF_OK)
        throw Failure{ExitCode::wrongType, displayName(arguments.file),
                      "the value of " + arguments.path + " is not of type " + arguments.type};
    Output::standard().writeLine(text);
    return ExitCode::ok;
}

} // namespace tool::prof
