// prof set and prof delete: change a profile and save it.
#include "commands.h"
#include "edited_profile.h"
#include "paths.h"
#include "text_io.h"
#include "value_types.h"

#include <new>

namespace tool::prof {

namespace {

void requireValue(const ValueType& type, const std::string& value) {
    if (!type.store(nullptr, nullptr, value))
        throw Failure{ExitCode::wrongType, value, "is not of type " + type.name};
}

} // namespace

ExitCode runSet(const Arguments& arguments) {
    const ValueType& type = valueType(arguments.type);
    requireStorablePath(arguments.path);
    requireValue(type, arguments.value);
    EditedProfile profile{arguments, Replaceable::textProfiles};
    const std::wstring path = toWide(arguments.path);
    type.store(profile.job(), path.c_str(), arguments.value);
    // Setting reports nothing; an item that is not there after it did not fit into memory.
    if (ProfGetStringLengthW(profile.job(), nullptr, path.c_str()) < 0)
        throw std::bad_alloc{};
    profile.saveAsText();
    return ExitCode::ok;
}

ExitCode runDelete(const Arguments& arguments) {
    requirePath(arguments.path);
    if (arguments.list && arguments.path == "/")
        throw Failure{ExitCode::usage, "", "the root list cannot be deleted"};
    EditedProfile profile{arguments, Replaceable::textProfiles};
    const auto reaches = arguments.list ? reachesList : reachesItem;
    if (!reaches(profile.job(), arguments.path))
        throw Failure{ExitCode::notFound, displayName(arguments.file),
                      (arguments.list ? "there is no list " : "there is no item ") + arguments.path};
    const auto remove = arguments.list ? ProfDeleteListW : ProfDeleteItemW;
    remove(profile.job(), nullptr, toWide(arguments.path).c_str());
    profile.saveAsText();
    return ExitCode::ok;
}

} // namespace tool::prof
