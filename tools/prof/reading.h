// How a file is read: by its name, its contents and what the command line says.
#pragma once

#include "profile_kind.h"

#include <string>

namespace tool::prof {

struct scReading {
    unsigned flags;      // PROF_READ_...
    const char* note;    // what the caller should know of the choice; null: nothing
    bool isJson = false; // which the library does not read
    bool isOurs = false; // the library's own opening may take it, too, if it is refused so
};

// name is what the command line says, "-" too. Throws Failure with malformed for what is no profile: the
// library would make an empty one of it.
scReading HowToRead(const std::string& name, const scContents& contents, bool plainIni);

} // namespace tool::prof
