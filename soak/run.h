// A run of a workload: its time, its chance, its folder, and what it has found.
#pragma once

#include <windows.h>

#include <filesystem>
#include <map>
#include <random>
#include <string>

namespace soak {

struct scPlan {
    int seconds = 60;
    unsigned seed = 0;
    std::filesystem::path folder; // its own; the working folder while it runs
};

class clsRun {
  public:
    explicit clsRun(const scPlan& plan);

    // Until the time is over.
    bool GoesOn() const { return GetTickCount64() < end_; }

    // A number from 0 to below a bound. The same for the same seed.
    unsigned Random(unsigned bound) { return static_cast<unsigned>(random_() % bound); }

    // One of the figures that are printed at the end.
    void Count(const char* what, long long count = 1) { figures_[what] += count; }

    // Something is wrong. The run goes on; the first few are printed.
    void Found(const std::string& what);
    void Require(bool holds, const std::string& what) {
        if (!holds)
            Found(what);
    }

    // Moves a file to where what is found stays.
    void Keep(const std::filesystem::path& file) const;

    // Prints the figures in one line; returns the number of things found.
    int Report(const char* workload) const;

  private:
    ULONGLONG end_; // milliseconds
    std::mt19937 random_;
    std::map<std::string, long long> figures_;
    int found_ = 0;
};

} // namespace soak
