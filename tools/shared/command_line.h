// What the program was called with.
#ifndef TOOL_COMMAND_LINE_H
#define TOOL_COMMAND_LINE_H

#include <string>
#include <vector>

namespace tool {

// The process's own command line in UTF-8, without the program's name.
std::vector<std::string> commandLine();

} // namespace tool

#endif
