// What a command line says.
#ifndef LOGPAN_ARGUMENTS_H
#define LOGPAN_ARGUMENTS_H

#include "exit_code.h"
#include "filter.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool::logpan {

struct Arguments {
    bool console = false;
    bool json = false;
    std::string filter;
    std::string exclude;
    bool regularExpressions = false;
    std::uint64_t maxLines = 0; // 0: no limit
    std::optional<double> exitAfter;
    std::size_t capacity = 200'000;
    std::size_t megabytes = 128;
    std::uint32_t datagram = 65507;

    PatternKind patternKind() const {
        return regularExpressions ? PatternKind::regularExpression : PatternKind::substring;
    }
    std::size_t bytes() const { return megabytes * 1024 * 1024; }
};

// Throws Failure for a command line that it does not understand. Nothing when it asked for help or the
// version, which are printed then.
std::optional<Arguments> parseCommandLine(std::vector<std::string> words);

// Throws Failure for a pattern that is none.
Filter filterOf(const Arguments& arguments);

} // namespace tool::logpan

#endif
