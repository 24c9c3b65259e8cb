// Runs a program with its three standard streams on pipes.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace prof_test {

struct Outcome {
    DWORD code = ~0u;
    std::string out;
    std::string err;
};

// commandLine is UTF-8 and begins with the program's name, which only fills its place there.
Outcome run(const std::filesystem::path& program, std::string_view commandLine,
            const std::filesystem::path& folder, std::string_view input);

} // namespace prof_test
