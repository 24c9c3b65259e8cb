// Paths: where they lead, and which of them an item can be stored under.
#pragma once

#include "escapes.h"
#include "profile.h"

#include <optional>
#include <span>
#include <string>

namespace tool::prof {

// The list of a path, null being the root list; "" and "/" are the root. Throws Failure with notFound.
ProfList FindList(const clsProfile& profile, const std::string& file, const std::string& path);

// Goes on from a list to the first one of each name. False when there is none; list is any then.
bool FindList(ProfJob job, std::span<const std::wstring> names, ProfList& list);

// The value that the names lead to, the first list of each.
std::optional<std::wstring> FindItem(ProfJob job, const Names& names);

// Whether deleting would reach something: unlike a look-up, it goes through every list of each name.
bool ReachesItem(ProfJob job, const Names& names);
bool ReachesList(ProfJob job, const Names& names);

// The path as the library takes it; nothing for names that its paths cannot tell: too long, or with a "/".
std::optional<std::wstring> LibraryPath(const Names& names);

// Throws Failure with usage for an empty path.
void RequirePath(const std::string& path);

// Throws Failure with usage for a path whose names would not survive being saved and read again.
void RequireStorablePath(const std::string& path);

} // namespace tool::prof
