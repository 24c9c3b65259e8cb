// What a save may replace: nothing that a profile would not hold is lost.
#pragma once

#include <string>

namespace tool::prof {

enum class Replaceable {
    textProfiles, // by a text profile; the command has --output
    allProfiles,  // by the form that the command line names
};

// For a command that saves what it has read from the same file. Throws Failure when that would lose
// something.
void RequireReplaceable(const std::string& file, bool plainIni, Replaceable replaceable);

// For a command that saves to a file that it has not read. Throws Failure for any file but a profile in
// whatever form, an empty file or none.
void RequireOverwritable(const std::string& file);

} // namespace tool::prof
