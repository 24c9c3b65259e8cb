// The queue of lines that may still grow.
//
// Lines stand in it in the order of their first pieces and leave it only at the front, so a slow line holds
// up those after it and their order stays; its time and the queue's length are bounded, so not for long. A
// line is found by its number: those in the queue are consecutive.
#include "joiner.h"

#include "finish_line.h"
#include "text_message.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::size_t mostWaiting = 4096;
constexpr std::size_t mostUnits = 4 * 1024 * 1024;

scLine LineOf(std::uint16_t port, const scPacket& packet) {
    scLine line;
    line.time = packet.time;
    line.module = packet.module;
    line.thread = packet.thread;
    line.processor = packet.processor;
    line.sequence = packet.sequence;
    line.port = port;
    line.process = packet.process;
    line.text = packet.text;
    return line;
}

} // namespace

void clsJoiner::Add(std::uint16_t port, const scPacket& packet, Clock::time_point now) {
    scSender& sender = senders_[port];
    const scKey key{packet.time, packet.thread, packet.sequence};
    const bool goesOn = sender.current == key;
    const Clock::time_point completeAt = now + (packet.full ? longWhile : moment);
    if (goesOn && Find(sender.line) != nullptr) {
        Append(sender.line, packet.text, completeAt);
        return;
    }
    if (!goesOn) {
        Complete(sender.line, now);
        missing_ += sender.check.MissingBefore(packet.sequence);
    }
    sender.current = key;
    sender.line = Begin(LineOf(port, packet), now, completeAt);
}

void clsJoiner::AddText(std::wstring_view message, const scStamp& arrived, Clock::time_point now) {
    const bool full = message.size() >= longestTextMessage;
    const Clock::time_point completeAt = now + (full ? longWhile : moment);
    std::optional<scLine> line = ParseTextMessage(message);
    if (!line && textGoesOn_ && Find(textLine_) != nullptr) {
        Append(textLine_, message, completeAt);
    } else {
        Complete(textLine_, now);
        if (!line) {
            line.emplace();
            line->text = message;
        }
        const scStamp sent = line->time; // the older form has no date
        line->time = arrived;
        if (HasSequence(*line)) {
            line->time.hour = sent.hour;
            line->time.minute = sent.minute;
            line->time.second = sent.second;
            line->time.millisecond = sent.millisecond;
        }
        textLine_ = Begin(std::move(*line), now, completeAt);
    }
    textGoesOn_ = full;
}

std::optional<scLine> clsJoiner::Take(Clock::time_point now) {
    if (queue_.empty() || (queue_.front().completeAt > now && !IsCrowded()))
        return std::nullopt;
    scLine line = std::move(queue_.front().line);
    units_ -= line.text.size();
    queue_.pop_front();
    ++firstNumber_;
    FinishLine(line);
    hosts_.TakeFrom(line);
    line.text.shrink_to_fit();
    return line;
}

std::optional<clsJoiner::Clock::time_point> clsJoiner::NextComplete() const {
    if (queue_.empty())
        return std::nullopt;
    return queue_.front().completeAt;
}

clsJoiner::scWaiting* clsJoiner::Find(LineNumber number) {
    const bool waits = number >= firstNumber_ && number - firstNumber_ < queue_.size();
    return waits ? &queue_[static_cast<std::size_t>(number - firstNumber_)] : nullptr;
}

void clsJoiner::Append(LineNumber number, std::wstring_view text, Clock::time_point completeAt) {
    scWaiting& waiting = *Find(number);
    std::wstring& whole = waiting.line.text;
    // One character more than is kept shows that the line was cut.
    const std::wstring_view piece = text.substr(0, longestLine + 1 - std::min(whole.size(), longestLine + 1));
    whole += piece;
    units_ += piece.size();
    waiting.completeAt = std::min(completeAt, waiting.latest);
}

clsJoiner::LineNumber clsJoiner::Begin(scLine line, Clock::time_point now, Clock::time_point completeAt) {
    units_ += line.text.size();
    queue_.push_back({std::move(line), completeAt, now + longest});
    return firstNumber_ + queue_.size() - 1;
}

void clsJoiner::Complete(LineNumber number, Clock::time_point now) {
    if (scWaiting* waiting = Find(number))
        waiting->completeAt = std::min(waiting->completeAt, now);
}

bool clsJoiner::IsCrowded() const {
    return queue_.size() > mostWaiting || units_ > mostUnits;
}

} // namespace tool::logpan
