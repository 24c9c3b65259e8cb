// Runs a program with its three standard streams on pipes.
#pragma once

#include "support/files.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace prof_test {

struct Outcome {
    DWORD code = ~0u;
    std::string out;
    std::string err;
};

// commandLine is UTF-8 and begins with the program's name, which only fills its place there.
Outcome run(const std::filesystem::path& program, std::string_view commandLine,
            const std::filesystem::path& folder, std::string_view input);

// A program that runs beside the test. It is killed when the test gives it up.
class Process {
  public:
    Process(const std::filesystem::path& program, std::string_view commandLine,
            const std::filesystem::path& folder, std::string_view input = {});
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // Waits until its standard error has that text, and returns what it has by then; nothing when it ended
    // without.
    std::string waitForError(std::string_view text);
    void kill() const { TerminateProcess(process_.get(), 1); }
    Outcome finish(); // waits for its end

  private:
    void drain(HANDLE pipe, std::string& text);

    testing_prof::Handle process_;
    testing_prof::Handle out_;
    testing_prof::Handle err_;
    Outcome outcome_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool errorEnded_ = false;
    std::jthread feeder_;
    std::jthread outReader_;
    std::jthread errReader_;
};

} // namespace prof_test
