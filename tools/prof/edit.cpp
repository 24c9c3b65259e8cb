// prof set and prof delete: change a profile and save it.
#include "commands.h"
#include "edited_profile.h"
#include "paths.h"
#include "text_io.h"
#include "value_types.h"

#include <new>

namespace tool::prof {

namespace {

void RequireValue(const scValueType& type, const std::string& value) {
    if (!type.store(nullptr, nullptr, value))
        throw scFailure{ExitCode::wrongType, value, "is not of type " + type.name};
}

} // namespace

ExitCode RunSet(const scArguments& arguments) {
    const scValueType& type = ValueType(arguments.type);
    RequireStorablePath(arguments.path);
    RequireValue(type, arguments.value);
    clsEditedProfile profile{arguments, Replaceable::textProfiles};
    const std::wstring path = ToWide(arguments.path);
    type.store(profile.Job(), path.c_str(), arguments.value);
    // Setting reports nothing; an item that is not there after it did not fit into memory.
    if (ProfGetStringLengthW(profile.Job(), nullptr, path.c_str()) < 0)
        throw std::bad_alloc{};
    profile.SaveAsText();
    return ExitCode::ok;
}

ExitCode RunDelete(const scArguments& arguments) {
    RequirePath(arguments.path);
    if (arguments.list && arguments.path == "/")
        throw scFailure{ExitCode::usage, "", "the root list cannot be deleted"};
    clsEditedProfile profile{arguments, Replaceable::textProfiles};
    const auto reaches = arguments.list ? ReachesList : ReachesItem;
    if (!reaches(profile.Job(), arguments.path))
        throw scFailure{ExitCode::notFound, DisplayName(arguments.file),
                        (arguments.list ? "there is no list " : "there is no item ") + arguments.path};
    const auto remove = arguments.list ? ProfDeleteListW : ProfDeleteItemW;
    remove(profile.Job(), nullptr, ToWide(arguments.path).c_str());
    profile.SaveAsText();
    return ExitCode::ok;
}

} // namespace tool::prof
