// Runs a program with its three standard streams on pipes.
#pragma once

#include "support/files.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace prof_test {

struct scOutcome {
    DWORD code = ~0u;
    std::string out;
    std::string err;
};

// commandLine is UTF-8 and begins with the program's name, which only fills its place there.
scOutcome RunProgram(const std::filesystem::path& program, std::string_view commandLine,
                     const std::filesystem::path& folder, std::string_view input);

// A program that runs beside the test. It is killed when the test gives it up.
class clsProcess {
  public:
    // Where its output is not wanted, its pipe is closed before the program writes.
    clsProcess(const std::filesystem::path& program, std::string_view commandLine,
               const std::filesystem::path& folder, std::string_view input = {}, bool wantsOutput = true);
    ~clsProcess();
    clsProcess(const clsProcess&) = delete;
    clsProcess& operator=(const clsProcess&) = delete;

    // Waits until its standard error, or its output, has that text, and returns what it has by then; nothing
    // when it ended without.
    std::string WaitForError(std::string_view text) { return WaitFor(outcome_.err, text); }
    std::string WaitForOutput(std::string_view text) { return WaitFor(outcome_.out, text); }
    void Kill() const { TerminateProcess(process_.get(), 1); }
    scOutcome Finish(); // waits for its end

  private:
    std::string WaitFor(const std::string& stream, std::string_view text);
    void Drain(HANDLE pipe, std::string& text);

    testing_prof::Handle process_;
    testing_prof::Handle out_;
    testing_prof::Handle err_;
    scOutcome outcome_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool errorEnded_ = false;
    std::jthread feeder_;
    std::jthread outReader_;
    std::jthread errReader_;
};

} // namespace prof_test
