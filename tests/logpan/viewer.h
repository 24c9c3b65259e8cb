// A logpan that runs beside the test.
#pragma once

#include "sender.h"

#include "support/beside_test.h"
#include "tools/process.h"

#include <gtest/gtest.h>

#include <string>

namespace logpan_test {

using prof_test::scOutcome;

class clsViewer : public prof_test::clsProcess {
  public:
    // What follows "logpan" on its command line.
    explicit clsViewer(const std::string& arguments, const char* program = LOGPAN_CONSOLE,
                       bool wantsOutput = true)
        : clsProcess(WithDesktop(program), "logpan " + arguments, std::filesystem::current_path(), {},
                     wantsOutput) {}

    // Waits until it listens; 0 when it does not.
    UINT32 Port() {
        constexpr std::string_view ready = "listening on port ";
        const std::string said = WaitForError("\n");
        const std::size_t at = said.find(ready);
        return at == std::string::npos ? 0 : static_cast<UINT32>(std::stoul(said.substr(at + ready.size())));
    }

    // Its end, with the lines that it printed. What it said last counts them.
    scOutcome Expect(const std::string& counters) {
        scOutcome outcome = Finish();
        EXPECT_EQ(outcome.code, 0u);
        EXPECT_TRUE(outcome.err.ends_with("logpan: " + counters + "\n")) << outcome.err;
        return outcome;
    }

  private:
    // A session's first window may start a program that lives on, which must not inherit the viewer's pipes.
    static std::filesystem::path WithDesktop(const char* program) {
        GetDesktopWindow();
        return testing_prof::BesideTest(program);
    }
};

} // namespace logpan_test
