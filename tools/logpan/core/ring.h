// The lines that the viewer holds: so many and so many bytes at most; the oldest ones give way.
//
// Each line has a number that it keeps, counted from 0.
#ifndef LOGPAN_RING_H
#define LOGPAN_RING_H

#include "line.h"

#include <deque>

namespace tool::logpan {

class Ring {
  public:
    Ring(std::size_t mostLines, std::size_t mostBytes) : mostLines_(mostLines), mostBytes_(mostBytes) {}

    void push(LinePtr line) {
        bytes_ += bytesOf(*line);
        lines_.push_back(std::move(line));
        while (lines_.size() > mostLines_ || (bytes_ > mostBytes_ && lines_.size() > 1))
            dropFirst();
    }

    void clear() {
        while (!lines_.empty())
            dropFirst();
    }

    std::uint64_t first() const { return first_; }
    std::uint64_t end() const { return first_ + lines_.size(); }
    std::size_t size() const { return lines_.size(); }
    const LinePtr& at(std::uint64_t number) const {
        return lines_[static_cast<std::size_t>(number - first_)];
    }

  private:
    void dropFirst() {
        bytes_ -= bytesOf(*lines_.front());
        lines_.pop_front();
        ++first_;
    }

    std::deque<LinePtr> lines_;
    std::uint64_t first_ = 0;
    std::size_t bytes_ = 0;
    std::size_t mostLines_;
    std::size_t mostBytes_;
};

} // namespace tool::logpan

#endif
