// The first words of a command line, as people type them who do not know the commands yet.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

struct scProgramWords {
    std::string_view program;
    std::string_view forFile; // the command that may be meant where a file's name stands instead of one
    std::vector<std::string_view> commands;
};

// "help" and "version" become the options of that name, "help COMMAND" that command's. Throws Failure with
// usage for a command that there is not, and says which one may have been meant.
std::vector<std::string> WithOptionsForWords(std::vector<std::string> words, const scProgramWords& program);

} // namespace tool
