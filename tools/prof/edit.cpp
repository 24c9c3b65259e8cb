// prof set and prof delete: change a profile and save it.
#include "commands.h"
#include "edited_ini.h"
#include "edited_profile.h"
#include "paths.h"
#include "text_io.h"
#include "tree_walk.h"
#include "value_types.h"

#include <new>

namespace tool::prof {

namespace {

void RequireValue(const scValueType& type, const std::string& value) {
    if (!type.store(nullptr, nullptr, value))
        throw scFailure{ExitCode::wrongType, value, "is not of type " + type.name};
}

// The text that the library stores for a value.
std::wstring StoredText(const scValueType& type, const std::string& value) {
    const clsProfile profile = clsProfile::MakeEmpty();
    type.store(profile.Job(), L"value", value);
    clsTreeWalk walk{profile.Job(), nullptr, clsTreeWalk::Scope::oneList};
    if (!walk.Next())
        throw std::bad_alloc{};
    return std::wstring{walk.Entry().value};
}

ExitCode SetInIni(const scArguments& arguments, const std::wstring& value) {
    clsEditedIni ini{arguments};
    ini.Set(arguments.path, value);
    ini.Save();
    return ExitCode::ok;
}

[[noreturn]] void RefuseToDelete(const scArguments& arguments) {
    throw scFailure{ExitCode::notFound, DisplayName(arguments.file),
                    (arguments.list ? "there is no list " : "there is no item ") + arguments.path};
}

ExitCode DeleteInIni(const scArguments& arguments) {
    clsEditedIni ini{arguments};
    if (!(arguments.list ? ini.DeleteLists(arguments.path) : ini.DeleteItems(arguments.path)))
        RefuseToDelete(arguments);
    ini.Save();
    return ExitCode::ok;
}

} // namespace

ExitCode RunSet(const scArguments& arguments) {
    const scValueType& type = ValueType(arguments.type);
    RequirePath(arguments.path);
    RequireValue(type, arguments.value);
    if (IsIniChangedInPlace(arguments))
        return SetInIni(arguments, StoredText(type, arguments.value));
    RequireStorablePath(arguments.path);
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
    if (IsIniChangedInPlace(arguments))
        return DeleteInIni(arguments);
    clsEditedProfile profile{arguments, Replaceable::textProfiles};
    const auto reaches = arguments.list ? ReachesList : ReachesItem;
    if (!reaches(profile.Job(), arguments.path))
        RefuseToDelete(arguments);
    const auto remove = arguments.list ? ProfDeleteListW : ProfDeleteItemW;
    remove(profile.Job(), nullptr, ToWide(arguments.path).c_str());
    profile.SaveAsText();
    return ExitCode::ok;
}

} // namespace tool::prof
