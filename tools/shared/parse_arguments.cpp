// Help and version to standard output, errors to Failure.
#include "parse_arguments.h"

#include "exit_code.h"
#include "text_io.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

namespace tool {

namespace {

// As Windows' own programs are asked; alone, or after a command. Elsewhere it could be a path.
bool AsksAsWindowsDoes(const std::vector<std::string>& words) {
    return !words.empty() && words.size() <= 2 && (words.back() == "/?" || words.back() == "-?");
}

} // namespace

bool ParseArguments(CLI::App& app, std::vector<std::string> words, const std::string& hint) {
    if (AsksAsWindowsDoes(words))
        words.back() = "--help";
    try {
        std::reverse(words.begin(), words.end()); // the parser takes them from the back
        app.parse(std::move(words));
        return true;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success))
            throw scFailure{ExitCode::usage, "", std::string{error.what()} + "\n" + hint};
        std::ostringstream text;
        app.exit(error, text, text);
        clsOutput::Standard().Write(text.str());
        return false;
    }
}

} // namespace tool
