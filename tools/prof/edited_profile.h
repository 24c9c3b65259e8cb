// A profile that a command changes: opened, and saved where the command line says.
//
// The file is opened and closed, and the save replaces it in one step: a reader, or a crash, meets the
// old contents or the new ones and nothing between.
#ifndef PROF_TOOL_EDITED_PROFILE_H
#define PROF_TOOL_EDITED_PROFILE_H

#include "arguments.h"
#include "profile.h"

namespace tool::prof {

// Opens FILE, or begins an empty profile when that is asked for. Throws Failure, also when the save in place
// would lose what the file holds.
Profile openForEdit(const Arguments& arguments);

void saveEdited(const Profile& profile, const Arguments& arguments);

} // namespace tool::prof

#endif
