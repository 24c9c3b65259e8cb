// prof set: changes a profile and saves it.
#include "commands.h"
#include "edited_ini.h"
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

ExitCode SetInIni(const scArguments& arguments, const std::wstring& value) {
    clsEditedIni ini{arguments};
    ini.Set(arguments.path, value);
    ini.Save();
    return ExitCode::ok;
}

void SetItem(clsEditedProfile& profile, const Names& names, const std::wstring& value) {
    const std::optional<std::wstring> path = LibraryPath(names);
    if (!path) {
        clsProfileTree tree{profile.Profile()};
        tree.Set(names, value);
        return profile.Become(tree.ToProfile());
    }
    ProfSetStringW(profile.Job(), nullptr, path->c_str(), value.c_str());
    // Setting reports nothing; an item that is not there after it did not fit into memory.
    if (ProfGetStringLengthW(profile.Job(), nullptr, path->c_str()) < 0)
        throw std::bad_alloc{};
}

} // namespace

ExitCode RunSet(const scArguments& arguments) {
    const scValueType& type = ValueType(arguments.type);
    RequirePath(arguments.path);
    RequireValue(type, arguments.value);
    const std::wstring value = StoredText(type, arguments.value);
    if (IsIniChangedInPlace(arguments))
        return SetInIni(arguments, value);
    RequireStorablePath(arguments.path);
    clsEditedProfile profile{arguments, Replaceable::textProfiles};
    SetItem(profile, NamesInPath(ToWide(arguments.path)), value);
    profile.SaveAsText();
    return ExitCode::ok;
}

} // namespace tool::prof
