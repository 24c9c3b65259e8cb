// The lines in the window: those that the filter lets through, in order, kept up to date piece by piece so
// that a new filter over many lines never makes the window wait.
#ifndef LOGPAN_SHOWN_LINES_H
#define LOGPAN_SHOWN_LINES_H

#include "filter.h"
#include "store.h"

#include <deque>

namespace tool::logpan {

class ShownLines {
  public:
    ShownLines(Store& store, std::size_t most) : store_(store), most_(most) {}

    // Begins anew with the lines that are held.
    void setFilter(Filter filter);

    // Drops everything, in the store, too.
    void clear();

    // Looks at new lines for about that long, and not at those from a limit on; true when more are left.
    // Rows are only added behind.
    bool advance(std::chrono::milliseconds budget, std::optional<std::uint64_t> limit = {});

    // Once there are a tenth more than are wanted, drops that tenth: the number of rows that went at the
    // front. Seldom, because all rows then move.
    std::size_t trim();

    std::size_t size() const { return lines_.size(); }
    const LinePtr& operator[](std::size_t row) const { return lines_[row]; }

  private:
    bool readBatch(std::optional<std::uint64_t> limit);

    Store& store_;
    std::size_t most_;
    Filter filter_;
    std::uint64_t next_ = 0;
    std::deque<LinePtr> lines_;
    std::vector<LinePtr> batch_;
};

} // namespace tool::logpan

#endif
