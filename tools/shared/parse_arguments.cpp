// Help and version to standard output, errors to Failure.
#include "parse_arguments.h"

#include "exit_code.h"
#include "text_io.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

namespace tool {

bool parseArguments(CLI::App& app, std::vector<std::string> words, const std::string& hint) {
    try {
        std::reverse(words.begin(), words.end()); // the parser takes them from the back
        app.parse(std::move(words));
        return true;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success))
            throw Failure{ExitCode::usage, "", std::string{error.what()} + "\n" + hint};
        std::ostringstream text;
        app.exit(error, text, text);
        Output::standard().write(text.str());
        return false;
    }
}

} // namespace tool
