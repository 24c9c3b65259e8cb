// The frame around a tool's work: every failure arrives there and leaves as one line on standard error and
// an exit code.
#ifndef TOOL_PROGRAM_H
#define TOOL_PROGRAM_H

#include "exit_code.h"

#include <string>
#include <vector>

namespace tool {

using Run = ExitCode (*)(std::vector<std::string> words);
using Report = void (*)(const char* name, const Failure& failure);

void reportOnStandardError(const char* name, const Failure& failure);

// Runs a tool with its command line; the result is the process's exit code.
int runProgram(const char* name, Run run, Report report = reportOnStandardError);

} // namespace tool

#endif
