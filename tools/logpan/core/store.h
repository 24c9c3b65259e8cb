// What the receiving threads fill and the showing thread reads.
//
// Adding never waits for the reader: one that falls behind misses the lines that the ring lost meanwhile.
#pragma once

#include "joiner.h"
#include "ring.h"

#include <condition_variable>
#include <mutex>

namespace tool::logpan {

struct scCounters {
    std::uint64_t received = 0; // lines
    std::uint64_t lost = 0;     // at least this number of lines of senders did not arrive
    std::uint64_t refused = 0;  // datagrams that are no lines
    std::size_t held = 0;
};

class clsStore {
  public:
    using Clock = clsJoiner::Clock;

    clsStore(std::size_t mostLines, std::size_t mostBytes) : ring_(mostLines, mostBytes) {}

    // For the receiving threads.
    void Add(std::uint16_t port, const scPacket& packet);
    void AddText(std::wstring_view message, const scStamp& arrived);
    void Refuse();

    // A line that is whole already, out of a file.
    void AddLine(scLine line);

    // Appends the lines from that number on, at most that number, and returns how many were skipped because
    // they are no longer held. Moves the number past the last one.
    std::uint64_t Read(std::uint64_t& number, std::size_t most, std::vector<LinePtr>& lines);

    // Waits until there is something to read from that number on; false when the time is over or stop was
    // called.
    bool Wait(std::uint64_t number, std::optional<Clock::time_point> until);

    // Ends all waiting, now and later, and completes the lines that waited for more pieces. What comes from
    // then on is not counted.
    void Stop();

    void Clear();
    scCounters Counters() const;

    // Numbers of the oldest line held and of the next one to come.
    std::uint64_t First() const;
    std::uint64_t end() const;

  private:
    void Settle(Clock::time_point now);
    void Wake();

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    clsJoiner joiner_;
    clsRing ring_;
    std::uint64_t refused_ = 0;
    bool stopped_ = false;
    bool asleep_ = false; // the reader waits for the first packet of all; a wake-up a packet would be dear
};

} // namespace tool::logpan
