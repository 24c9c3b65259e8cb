// Makes lines of packets: joins the pieces of one line, keeps the order in which lines began, and counts
// those that are missing.
//
// A line is complete when its sender begins another one, or when no piece came for a while: a long while
// when its last datagram was full, else a moment. Until then it stands in a queue that is bounded.
#ifndef LOGPAN_JOINER_H
#define LOGPAN_JOINER_H

#include "host_tags.h"
#include "packet.h"
#include "sequence_check.h"

#include <chrono>
#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tool::logpan {

class Joiner {
  public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::size_t longestLine = 64 * 1024; // characters; a longer line is cut
    static constexpr std::chrono::milliseconds moment{20};
    static constexpr std::chrono::milliseconds longWhile{1000};
    static constexpr std::chrono::milliseconds longest{3000}; // pieces without end hold nobody up

    void add(std::uint16_t port, const Packet& packet, Clock::time_point now);

    // A message of the older transport, which does not say who sent it. One that has no columns of its own
    // gets the time of its arrival, or continues the one before if that was as long as a message can be.
    void addText(std::wstring_view message, const Stamp& arrived, Clock::time_point now);

    // Takes the next line out that is complete by now; nothing when there is none.
    std::optional<Line> take(Clock::time_point now);

    // When a line will be complete though no more packets come; nothing while none waits.
    std::optional<Clock::time_point> nextComplete() const;

    std::uint64_t missing() const { return missing_; }

  private:
    using LineNumber = std::uint64_t;

    // What the pieces of a line have in common.
    struct Key {
        Stamp time;
        std::uint32_t thread = 0;
        std::uint32_t sequence = 0;

        bool operator==(const Key&) const = default;
    };

    struct Sender {
        std::optional<Key> current;
        LineNumber line = 0; // the last one that it began
        SequenceCheck check;
    };

    struct Waiting {
        Line line;
        Clock::time_point completeAt;
        Clock::time_point latest;
    };

    Waiting* find(LineNumber number);
    void append(LineNumber number, std::wstring_view text, Clock::time_point completeAt);
    LineNumber begin(Line line, Clock::time_point now, Clock::time_point completeAt);
    void complete(LineNumber number, Clock::time_point now);
    bool isCrowded() const;

    std::deque<Waiting> queue_;
    LineNumber firstNumber_ = 1;
    std::size_t units_ = 0;
    std::unordered_map<std::uint16_t, Sender> senders_;
    HostTags hosts_;
    LineNumber textLine_ = 0;
    bool textGoesOn_ = false;
    std::uint64_t missing_ = 0;
};

} // namespace tool::logpan

#endif
