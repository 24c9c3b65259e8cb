// Which process sends from a port. Asking the system takes milliseconds, so its answer is kept while lines
// come; a port that was silent for a while may have a new owner and is asked for again.
#pragma once

#include "writing_process.h"

#include <chrono>
#include <functional>
#include <unordered_map>

namespace tool::logpan {

class clsProcessCache {
  public:
    using Clock = std::chrono::steady_clock;
    using Find = std::function<ProcessPtr(std::uint16_t port)>;

    static constexpr std::chrono::seconds silence{2};

    explicit clsProcessCache(Find find) : find_(std::move(find)) {}

    // Called with each datagram. A program that has ended meanwhile keeps the answer it had.
    ProcessPtr Of(std::uint16_t port, Clock::time_point now) {
        scEntry& entry = entries_[port];
        if (entry.asked && now - entry.heard < silence) {
            entry.heard = now;
            return entry.process;
        }
        if (ProcessPtr found = find_(port))
            entry.process = std::move(found);
        else if (entry.asked && now - entry.heard > forgotten)
            entry.process.reset();
        entry.asked = true;
        entry.heard = now;
        return entry.process;
    }

  private:
    static constexpr std::chrono::seconds forgotten{60};

    struct scEntry {
        ProcessPtr process;
        Clock::time_point heard{};
        bool asked = false;
    };

    Find find_;
    std::unordered_map<std::uint16_t, scEntry> entries_; // at most 65,535
};

} // namespace tool::logpan
