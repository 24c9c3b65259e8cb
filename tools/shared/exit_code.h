// The exit codes of the tools and the one exception that carries them to main.
#pragma once

#include <string>

namespace tool {

enum class ExitCode : int {
    ok = 0,
    notFound = 1,
    different = 1, // of a comparison
    usage = 2,
    cannotOpen = 3,
    malformed = 4,
    cannotSave = 5,
    wrongType = 6,
    outOfMemory = 7,
    interrupted = 8,
};

// Ends a command: printed as "program: subject: reason", or "program: reason" without a subject.
struct scFailure {
    ExitCode code;
    std::string subject;
    std::string reason;
};

} // namespace tool
