// Makes lines of packets: joins the pieces of one line, keeps the order in which lines began, and counts
// those that are missing.
//
// A line is complete when its sender begins another one, or when no piece came for a while: a long while
// when its last datagram was full, else a moment. Until then it stands in a queue that is bounded.
#pragma once

#include "host_tags.h"
#include "packet.h"
#include "sequence_check.h"

#include <chrono>
#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tool::logpan {

class clsJoiner {
  public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds moment{20};
    static constexpr std::chrono::milliseconds longWhile{1000};
    static constexpr std::chrono::milliseconds longest{3000}; // pieces without end hold nobody up

    void Add(std::uint16_t port, const scPacket& packet, Clock::time_point now);

    // A message of the older transport, which does not say who sent it. One that has no columns of its own
    // gets the time of its arrival, or continues the one before if that was as long as a message can be.
    void AddText(std::wstring_view message, const scStamp& arrived, Clock::time_point now);

    // Takes the next line out that is complete by now; nothing when there is none.
    std::optional<scLine> Take(Clock::time_point now);

    // When a line will be complete though no more packets come; nothing while none waits.
    std::optional<Clock::time_point> NextComplete() const;

    std::uint64_t Missing() const { return missing_; }

  private:
    using LineNumber = std::uint64_t;

    // What the pieces of a line have in common.
    struct scKey {
        scStamp time;
        std::uint32_t thread = 0;
        std::uint32_t sequence = 0;

        bool operator==(const scKey&) const = default;
    };

    struct scSender {
        std::optional<scKey> current;
        LineNumber line = 0; // the last one that it began
        clsSequenceCheck check;
    };

    struct scWaiting {
        scLine line;
        Clock::time_point completeAt;
        Clock::time_point latest;
    };

    scWaiting* Find(LineNumber number);
    void Append(LineNumber number, std::wstring_view text, Clock::time_point completeAt);
    LineNumber Begin(scLine line, Clock::time_point now, Clock::time_point completeAt);
    void Complete(LineNumber number, Clock::time_point now);
    bool IsCrowded() const;

    std::deque<scWaiting> queue_;
    LineNumber firstNumber_ = 1;
    std::size_t units_ = 0;
    std::unordered_map<std::uint16_t, scSender> senders_;
    clsHostTags hosts_;
    LineNumber textLine_ = 0;
    bool textGoesOn_ = false;
    std::uint64_t missing_ = 0;
};

} // namespace tool::logpan
