// The lines in the window: those that the filter lets through, in order, kept up to date piece by piece so
// that a new filter over many lines never makes the window wait.
//
// A line that the store drops stays as long as it is shown: what a filter has found is not lost to the flood.
#ifndef LOGPAN_SHOWN_LINES_H
#define LOGPAN_SHOWN_LINES_H

#include "filter.h"
#include "store.h"

#include <deque>

namespace tool::logpan {

class ShownLines {
  public:
    // So many lines and bytes are kept at most, and a tenth more between two calls of trim.
    ShownLines(Store& store, std::size_t mostLines, std::size_t mostBytes)
        : store_(store), mostLines_(mostLines), mostBytes_(mostBytes) {}

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

    // How many lines are held in all: those of the store, whose counters are these, and those that only the
    // rows hold.
    std::size_t held(const Counters& counters) const;

    std::size_t size() const { return rows_.size(); }
    const LinePtr& operator[](std::size_t row) const { return rows_[row].line; }

  private:
    struct Row {
        std::uint64_t number; // in the store
        LinePtr line;
    };

    bool readBatch(std::optional<std::uint64_t> limit);
    void add(std::uint64_t number, LinePtr line);
    void begin();

    Store& store_;
    std::size_t mostLines_;
    std::size_t mostBytes_;
    Filter filter_;
    std::uint64_t next_ = 0;
    std::deque<Row> rows_;
    std::size_t bytes_ = 0;
    std::vector<LinePtr> batch_;
};

} // namespace tool::logpan

#endif
