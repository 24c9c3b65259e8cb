// The queue of lines that may still grow.
#include "joiner.h"

#include "text_message.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::size_t mostWaiting = 4096;
constexpr std::size_t mostUnits = 4 * 1024 * 1024;
constexpr std::wstring_view cutMark = L"\u2026";

Line lineOf(std::uint16_t port, const Packet& packet) {
    Line line;
    line.time = packet.time;
    line.module = packet.module;
    line.thread = packet.thread;
    line.processor = packet.processor;
    line.sequence = packet.sequence;
    line.port = port;
    line.text = packet.text;
    return line;
}

void cutTo(std::wstring& text, std::size_t length) {
    if (text.size() <= length)
        return;
    text.resize(length - cutMark.size());
    text += cutMark;
}

// Pieces are joined as they come; only a whole line tells which blanks are its indentation.
void finish(Line& line) {
    std::wstring& text = line.text;
    cutTo(text, Joiner::longestLine);
    text.resize(text.find_last_not_of(L"\r\n") + 1);
    line.level = std::min(text.find_first_not_of(L' '), text.size());
    text.erase(0, line.level);
}

} // namespace

void Joiner::add(std::uint16_t port, const Packet& packet, Clock::time_point now) {
    Sender& sender = senders_[port];
    const Key key{packet.time, packet.thread, packet.sequence};
    const bool goesOn = sender.current == key;
    const Clock::time_point completeAt = now + (packet.full ? longWhile : moment);
    if (goesOn && find(sender.line) != nullptr) {
        append(sender.line, packet.text, completeAt);
        return;
    }
    if (!goesOn) {
        complete(sender.line, now);
        missing_ += sender.check.missingBefore(packet.sequence);
    }
    sender.current = key;
    sender.line = begin(lineOf(port, packet), now, completeAt);
}

void Joiner::addText(std::wstring_view message, const Stamp& arrived, Clock::time_point now) {
    const bool full = message.size() >= longestTextMessage;
    const Clock::time_point completeAt = now + (full ? longWhile : moment);
    std::optional<Line> line = parseTextMessage(message);
    if (!line && textGoesOn_ && find(textLine_) != nullptr) {
        append(textLine_, message, completeAt);
    } else {
        complete(textLine_, now);
        if (!line) {
            line.emplace();
            line->text = message;
        }
        const Stamp sent = line->time; // the older form has no date
        line->time = arrived;
        if (hasSequence(*line)) {
            line->time.hour = sent.hour;
            line->time.minute = sent.minute;
            line->time.second = sent.second;
            line->time.millisecond = sent.millisecond;
        }
        textLine_ = begin(std::move(*line), now, completeAt);
    }
    textGoesOn_ = full;
}

std::optional<Line> Joiner::take(Clock::time_point now) {
    if (queue_.empty() || (queue_.front().completeAt > now && !isCrowded()))
        return std::nullopt;
    Line line = std::move(queue_.front().line);
    units_ -= line.text.size();
    queue_.pop_front();
    ++firstNumber_;
    finish(line);
    hosts_.takeFrom(line);
    line.text.shrink_to_fit();
    return line;
}

std::optional<Joiner::Clock::time_point> Joiner::nextComplete() const {
    if (queue_.empty())
        return std::nullopt;
    return queue_.front().completeAt;
}

Joiner::Waiting* Joiner::find(LineNumber number) {
    const bool waits = number >= firstNumber_ && number - firstNumber_ < queue_.size();
    return waits ? &queue_[static_cast<std::size_t>(number - firstNumber_)] : nullptr;
}

void Joiner::append(LineNumber number, std::wstring_view text, Clock::time_point completeAt) {
    Waiting& waiting = *find(number);
    std::wstring& whole = waiting.line.text;
    // One character more than is kept tells that the line was cut.
    const std::wstring_view piece = text.substr(0, longestLine + 1 - std::min(whole.size(), longestLine + 1));
    whole += piece;
    units_ += piece.size();
    waiting.completeAt = std::min(completeAt, waiting.latest);
}

Joiner::LineNumber Joiner::begin(Line line, Clock::time_point now, Clock::time_point completeAt) {
    units_ += line.text.size();
    queue_.push_back({std::move(line), completeAt, now + longest});
    return firstNumber_ + queue_.size() - 1;
}

void Joiner::complete(LineNumber number, Clock::time_point now) {
    if (Waiting* waiting = find(number))
        waiting->completeAt = std::min(waiting->completeAt, now);
}

bool Joiner::isCrowded() const {
    return queue_.size() > mostWaiting || units_ > mostUnits;
}

} // namespace tool::logpan
