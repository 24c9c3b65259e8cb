// Times things that are to be compared: every contender runs once a round, and the rounds of all are
// interleaved, so that a machine that gets slower or faster meanwhile does so for all of them.
#pragma once

#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

// A measurement that could not be made: a call failed or gave a wrong result.
class clsBenchError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Throws clsBenchError unless the condition holds. A figure of work that was not done is worse than none.
inline void Require(bool condition, const char* what) {
    if (!condition)
        throw clsBenchError(what);
}

// Nanoseconds since some fixed moment.
double NowNs();

// Nanoseconds that one call of the function takes.
template <typename Function>
double Timed(Function&& function) {
    const double start = NowNs();
    function();
    return NowNs() - start;
}

// Nanoseconds that one of several calls of the function takes; it gets the call's number.
template <typename Function>
double PerCall(std::size_t calls, Function&& function) {
    const double all = Timed([&] {
        for (std::size_t done = 0; done < calls; ++done)
            function(done);
    });
    return all / static_cast<double>(calls);
}

// Keeps the optimizer from dropping a computation whose result nobody reads.
void Consume(std::size_t value);

// One round of work; returns the nanoseconds that count, so that setting up and tidying up need not.
using Round = std::function<double()>;

// Runs each contender `rounds` times, interleaved and in turning order, after one round that is not
// counted. Result: each contender's median in nanoseconds.
std::vector<double> Race(std::span<const Round> contenders, int rounds);

double Median(std::vector<double> samples);

// What the command line chose for all sections.
struct scSettings {
    int rounds = 21;
    bool quick = false;  // fewer rounds and less work: a check that everything runs
    std::wstring folder; // for files of our own; exists, ends in a backslash
};

} // namespace bench
