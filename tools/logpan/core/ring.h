// The lines that the viewer holds: at most a number of lines and a number of bytes; the oldest ones give way.
//
// Each line has a number that it keeps, counted from 0.
#pragma once

#include "line.h"

#include <deque>

namespace tool::logpan {

class clsRing {
  public:
    clsRing(std::size_t mostLines, std::size_t mostBytes) : mostLines_(mostLines), mostBytes_(mostBytes) {}

    void Push(LinePtr line) {
        bytes_ += BytesOf(*line);
        lines_.push_back(std::move(line));
        while (lines_.size() > mostLines_ || (bytes_ > mostBytes_ && lines_.size() > 1))
            DropFirst();
    }

    void Clear() {
        while (!lines_.empty())
            DropFirst();
    }

    std::uint64_t First() const { return first_; }
    std::uint64_t end() const { return first_ + lines_.size(); }
    std::size_t size() const { return lines_.size(); }
    const LinePtr& At(std::uint64_t number) const {
        return lines_[static_cast<std::size_t>(number - first_)];
    }

  private:
    void DropFirst() {
        bytes_ -= BytesOf(*lines_.front());
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
