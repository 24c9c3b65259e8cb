// The lines in the window: those that the filter lets through, in order, kept up to date piece by piece so
// that a new filter over many lines never makes the window wait.
//
// A line that the store drops stays as long as it is shown: what a filter has found is not lost to the flood.
#pragma once

#include "filter.h"
#include "store.h"

#include <deque>

namespace tool::logpan {

class clsShownLines {
  public:
    // At most these lines and bytes are kept, and a tenth more between two calls of trim.
    clsShownLines(clsStore& store, std::size_t mostLines, std::size_t mostBytes)
        : store_(&store), mostLines_(mostLines), mostBytes_(mostBytes) {}

    // Begins anew with the lines of another store, of which as many are kept.
    void SetStore(clsStore& store, std::size_t mostLines, std::size_t mostBytes);

    // Begins anew with the lines that are held.
    void SetFilter(scFilter filter);

    // Drops everything, in the store, too.
    void Clear();

    // Looks at new lines for about that long, and not at those from a limit on; true when more are left.
    // Rows are only added at the end.
    bool Advance(std::chrono::milliseconds budget, std::optional<std::uint64_t> limit = {});

    // Once there are a tenth more than are wanted, drops that tenth: the number of rows that went at the
    // front. Seldom, because all rows then move.
    std::size_t Trim();

    // How many lines are held in all: those of the store, whose counters are these, and those that only the
    // rows hold.
    std::size_t Held(const scCounters& counters) const;

    std::size_t size() const { return rows_.size(); }
    std::uint64_t Number(std::size_t row) const { return rows_[row].number; } // the line's in the store
    const LinePtr& operator[](std::size_t row) const { return rows_[row].line; }

  private:
    struct scRow {
        std::uint64_t number; // in the store
        LinePtr line;
    };

    bool ReadBatch(std::optional<std::uint64_t> limit);
    void Add(std::uint64_t number, LinePtr line);
    void Begin();

    clsStore* store_;
    std::size_t mostLines_;
    std::size_t mostBytes_;
    scFilter filter_;
    std::uint64_t next_ = 0;
    std::deque<scRow> rows_;
    std::size_t bytes_ = 0;
    std::vector<LinePtr> batch_;
};

} // namespace tool::logpan
