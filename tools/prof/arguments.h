// What a command line says, and how each command declares the part that it takes.
#pragma once

#include "exit_code.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tool::prof {

struct scArguments {
    std::string file;
    std::string other; // the second profile
    std::string path;
    std::vector<std::string> paths;
    std::string value;
    std::string type = "string";
    std::string output;
    std::string form; // of convert; empty: by the name of the output
    std::string folder;
    std::string key;
    std::vector<std::string> patterns;
    std::optional<std::string> fallback; // of get
    std::vector<std::string> pages = {"-"};
    std::string links = "inline";
    std::size_t width = 0; // columns; 0: lines are not broken
    bool flat = false;
    bool list = false;
    bool create = false;
    bool compress = false;
    bool plainIni = false;
    bool markers = false;
    bool quiet = false;
    bool onlyNew = false;
    bool json = false;
    bool strings = false; // of JSON: no numbers, true or false
};

// For commands that read two profiles. Throws Failure with usage when both would be standard input.
void RequireOneStandardInput(const scArguments& arguments);

struct scCommand {
    const char* name;
    const char* purpose;
    void (*declare)(CLI::App& app, scArguments& arguments);
    ExitCode (*run)(const scArguments& arguments);
};

// Runs the command that the command line names. Prints help and the version itself; throws Failure for
// a command line that it does not understand.
ExitCode Dispatch(std::vector<std::string> words);

} // namespace tool::prof
