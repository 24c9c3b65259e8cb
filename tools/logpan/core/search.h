// Looks for a row among those that are shown, forwards or backwards and once around, piece by piece: a
// regular expression over many rows takes longer than a window may leave its messages alone.
#pragma once

#include "bookmarks.h"
#include "shown_lines.h"

#include <functional>

namespace tool::logpan {

class clsSearch {
  public:
    using Wanted = std::function<bool(std::size_t row)>;

    enum class State { idle, running, found, notFound };

    // Begins after that row, or before it; without one at the first or last row.
    void Begin(std::size_t rows, std::optional<std::size_t> from, bool backwards, Wanted wanted);
    void Cancel() { state_ = State::idle; }

    // Goes on for about that long. Rows that were added since it began are not looked at.
    State Advance(std::chrono::milliseconds budget);

    // Rows that left the front took their numbers along.
    void DropFirst(std::size_t rows);

    State Now() const { return state_; }
    std::size_t Row() const { return row_; } // once found

  private:
    State state_ = State::idle;
    Wanted wanted_;
    std::size_t rows_ = 0;
    std::size_t row_ = 0;
    std::size_t left_ = 0; // to look at
    bool backwards_ = false;
};

} // namespace tool::logpan
