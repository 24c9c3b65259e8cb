// The way from the argument parser's exceptions to a tool's own.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

// False when the words asked for help or the version, which are printed then. Throws Failure with the hint
// for words that the parser does not understand.
bool ParseArguments(CLI::App& app, std::vector<std::string> words, const std::string& hint);

} // namespace tool
