// What the program was called with.
#pragma once

#include <string>
#include <vector>

namespace tool {

// The process's own command line in UTF-8, without the program's name.
std::vector<std::string> CommandLine();

} // namespace tool
