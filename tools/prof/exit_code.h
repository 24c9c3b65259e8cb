// The exit codes of prof and the one exception that carries them to main.
#ifndef PROF_TOOL_EXIT_CODE_H
#define PROF_TOOL_EXIT_CODE_H

#include <string>

namespace prof_tool {

enum class ExitCode : int {
    ok = 0,
    notFound = 1,
    usage = 2,
    cannotOpen = 3,
    malformed = 4,
    cannotSave = 5,
    wrongType = 6,
    outOfMemory = 7,
};

// Ends a command: printed as "prof: subject: reason", or "prof: reason" without a subject.
struct Failure {
    ExitCode code;
    std::string subject;
    std::string reason;
};

} // namespace prof_tool

#endif
