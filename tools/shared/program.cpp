// Exceptions to exit codes.
#include "program.h"

#include "command_line.h"
#include "text_io.h"

#include <new>
#include <stdexcept>

namespace tool {

namespace {

int Leave(const char* name, const scFailure& failure, Report report) {
    report(name, failure);
    return static_cast<int>(failure.code);
}

} // namespace

void ReportOnStandardError(const char* name, const scFailure& failure) {
    try {
        clsOutput::Standard().Flush(); // what was found before the failure
    } catch (const scFailure&) {
        // The failure that ends the command is the one to report.
    }
    PrintError(name, failure.subject, failure.reason);
}

int RunProgram(const char* name, Run run, Report report) {
    try {
        const ExitCode code = run(CommandLine());
        clsOutput::Standard().Flush();
        return static_cast<int>(code);
    } catch (const scFailure& failure) {
        return Leave(name, failure, report);
    } catch (const std::bad_alloc&) {
        return Leave(name, {ExitCode::outOfMemory, "", "out of memory"}, report);
    } catch (const std::length_error&) { // a text that no memory of this process could hold
        return Leave(name, {ExitCode::outOfMemory, "", "out of memory"}, report);
    }
}

} // namespace tool
