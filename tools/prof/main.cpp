// prof: a command line tool on the profile store's public interface.
//
// Every failure arrives here and leaves as one line on standard error and an exit code.
#include "arguments.h"
#include "command_line.h"
#include "text_io.h"

#include <new>
#include <stdexcept>

namespace {

using tool::ExitCode;

ExitCode run() {
    const ExitCode code = tool::prof::dispatch(tool::commandLine());
    tool::Output::standard().flush();
    return code;
}

ExitCode report(const tool::Failure& failure) {
    try {
        tool::Output::standard().flush(); // what was found before the failure
    } catch (const tool::Failure&) {
        // The failure that ends the command is the one to report.
    }
    tool::printError("prof", failure.subject, failure.reason);
    return failure.code;
}

} // namespace

int main() {
    try {
        return static_cast<int>(run());
    } catch (const tool::Failure& failure) {
        return static_cast<int>(report(failure));
    } catch (const std::bad_alloc&) {
        return static_cast<int>(report({ExitCode::outOfMemory, "", "out of memory"}));
    } catch (const std::length_error&) { // a text that no memory of this process could hold
        return static_cast<int>(report({ExitCode::outOfMemory, "", "out of memory"}));
    }
}
