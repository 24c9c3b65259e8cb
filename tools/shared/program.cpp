// Exceptions to exit codes.
#include "program.h"

#include "command_line.h"
#include "text_io.h"

#include <new>
#include <stdexcept>

namespace tool {

namespace {

int leave(const char* name, const Failure& failure, Report report) {
    report(name, failure);
    return static_cast<int>(failure.code);
}

} // namespace

void reportOnStandardError(const char* name, const Failure& failure) {
    try {
        Output::standard().flush(); // what was found before the failure
    } catch (const Failure&) {
        // The failure that ends the command is the one to report.
    }
    printError(name, failure.subject, failure.reason);
}

int runProgram(const char* name, Run run, Report report) {
    try {
        const ExitCode code = run(commandLine());
        Output::standard().flush();
        return static_cast<int>(code);
    } catch (const Failure& failure) {
        return leave(name, failure, report);
    } catch (const std::bad_alloc&) {
        return leave(name, {ExitCode::outOfMemory, "", "out of memory"}, report);
    } catch (const std::length_error&) { // a text that no memory of this process could hold
        return leave(name, {ExitCode::outOfMemory, "", "out of memory"}, report);
    }
}

} // namespace tool
