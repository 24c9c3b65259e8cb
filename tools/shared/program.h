// The frame around a tool's work: every failure arrives there and leaves as one line on standard error and
// an exit code.
#pragma once

#include "exit_code.h"

#include <string>
#include <vector>

namespace tool {

using Run = ExitCode (*)(std::vector<std::string> words);
using Report = void (*)(const char* name, const scFailure& failure);

void ReportOnStandardError(const char* name, const scFailure& failure);

// Runs a tool with its command line; the result is the process's exit code.
int RunProgram(const char* name, Run run, Report report = ReportOnStandardError);

} // namespace tool
