// prof: a command line tool on the profile store's public interface.
//
// Every failure arrives here and leaves as one line on standard error and an exit code.
#include "arguments.h"
#include "text_io.h"

#include <new>
#include <stdexcept>

namespace {

using prof_tool::ExitCode;

ExitCode run() {
    const ExitCode code = prof_tool::dispatch(prof_tool::commandLine());
    prof_tool::Output::standard().flush();
    return code;
}

ExitCode report(const prof_tool::Failure& failure) {
    try {
        prof_tool::Output::standard().flush(); // what was found before the failure
    } catch (const prof_tool::Failure&) {
        // The failure that ends the command is the one to report.
    }
    prof_tool::printError(failure.subject, failure.reason);
    return failure.code;
}

} // namespace

int main() {
    try {
        return static_cast<int>(run());
    } catch (const prof_tool::Failure& failure) {
        return static_cast<int>(report(failure));
    } catch (const std::bad_alloc&) {
        return static_cast<int>(report({ExitCode::outOfMemory, "", "out of memory"}));
    } catch (const std::length_error&) { // a text that no memory of this process could hold
        return static_cast<int>(report({ExitCode::outOfMemory, "", "out of memory"}));
    }
}
