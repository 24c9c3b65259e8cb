// What a command line says.
#pragma once

#include "exit_code.h"
#include "filter_text.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool::logpan {

struct scArguments {
    bool console = false;
    bool json = false;
    std::vector<std::string> files; // none: what programs write now
    std::string filter;
    std::string exclude;
    bool regularExpressions = false;
    std::string only;
    std::uint64_t maxLines = 0; // 0: no limit
    std::optional<double> exitAfter;
    std::optional<std::string> settings; // a file of its own; else the usual one
    std::size_t capacity = 200'000;
    std::size_t megabytes = 128;
    std::uint32_t datagram = 65507;

    std::size_t Bytes() const { return megabytes * 1024 * 1024; }
};

// Throws Failure for a command line that it does not understand. Nothing when it asked for help or the
// version, which are printed then.
std::optional<scArguments> ParseCommandLine(std::vector<std::string> words);

// The filter that the options make together, which is one. Throws Failure where it is none.
scFilterText FilterTextOf(const scArguments& arguments);

} // namespace tool::logpan
