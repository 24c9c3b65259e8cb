// Paths: where they lead, and which of them an item can be stored under.
#pragma once

#include "profile.h"

#include <string>

namespace tool::prof {

// The list of a path, null being the root list; "" and "/" are the root. Throws Failure with notFound.
ProfList FindList(const clsProfile& profile, const std::string& file, const std::string& path);

// Whether deleting would reach something: unlike a look-up, it goes through every list of each name.
bool ReachesItem(ProfJob job, const std::string& path);
bool ReachesList(ProfJob job, const std::string& path);

// Throws Failure with usage for an empty path.
void RequirePath(const std::string& path);

// Throws Failure with usage for a path whose names would not survive being saved and read again.
void RequireStorablePath(const std::string& path);

} // namespace tool::prof
