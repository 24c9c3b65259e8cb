// One row after the other, with a look at the clock after each.
#include "search.h"

#include <algorithm>

namespace tool::logpan {

void clsSearch::Begin(std::size_t rows, std::optional<std::size_t> from, bool backwards, Wanted wanted) {
    wanted_ = std::move(wanted);
    rows_ = rows;
    left_ = rows;
    backwards_ = backwards;
    row_ = from && *from < rows ? *from : (backwards || rows == 0 ? 0 : rows - 1);
    state_ = rows > 0 ? State::running : State::notFound;
}

clsSearch::State clsSearch::Advance(std::chrono::milliseconds budget) {
    const auto end = clsStore::Clock::now() + budget;
    while (state_ == State::running) {
        row_ = (backwards_ ? row_ + rows_ - 1 : row_ + 1) % rows_;
        --left_;
        if (wanted_(row_))
            state_ = State::found;
        else if (left_ == 0)
            state_ = State::notFound;
        else if (clsStore::Clock::now() >= end)
            break;
    }
    return state_;
}

void clsSearch::DropFirst(std::size_t rows) {
    if (rows == 0 || state_ != State::running)
        return;
    rows_ -= std::min(rows, rows_);
    left_ = std::min(left_, rows_);
    if (left_ == 0)
        state_ = State::notFound;
    else if (row_ >= rows)
        row_ -= rows;
    else
        row_ = backwards_ ? 0 : rows_ - 1; // the next one is at the other end, or the first one
}

} // namespace tool::logpan
