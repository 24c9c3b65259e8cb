// Paths: where they lead, and which of them an item can be stored under.
#ifndef PROF_TOOL_PATHS_H
#define PROF_TOOL_PATHS_H

#include "profile.h"

#include <string>

namespace tool::prof {

// The list of a path, null being the root list; "" and "/" are the root. Throws Failure with notFound.
ProfList findList(const Profile& profile, const std::string& file, const std::string& path);

// Whether deleting would reach something: unlike a look-up, it goes through every list of each name.
bool reachesItem(ProfJob job, const std::string& path);
bool reachesList(ProfJob job, const std::string& path);

// Throws Failure with usage for an empty path.
void requirePath(const std::string& path);

// Throws Failure with usage for a path whose names would not survive being saved and read again.
void requireStorablePath(const std::string& path);

} // namespace tool::prof

#endif
