// Filters in small batches, and looks at the clock after each line: a regular expression may be slow.
#include "shown_lines.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::size_t batchSize = 256;

} // namespace

void ShownLines::setFilter(Filter filter) {
    filter_ = std::move(filter);
    begin();
}

void ShownLines::clear() {
    store_.clear();
    begin();
}

void ShownLines::begin() {
    rows_.clear();
    bytes_ = 0;
    next_ = store_.first();
}

bool ShownLines::advance(std::chrono::milliseconds budget, std::optional<std::uint64_t> limit) {
    const Store::Clock::time_point end = Store::Clock::now() + budget;
    while (readBatch(limit))
        for (std::size_t at = 0; at < batch_.size(); ++at) {
            const std::size_t left = batch_.size() - at - 1;
            if (filter_.shows(*batch_[at]))
                add(next_ - left - 1, std::move(batch_[at]));
            if (Store::Clock::now() >= end) {
                next_ -= left; // the rest of the batch comes again
                return true;
            }
        }
    return false;
}

void ShownLines::add(std::uint64_t number, LinePtr line) {
    bytes_ += bytesOf(*line);
    rows_.push_back({number, std::move(line)});
}

bool ShownLines::readBatch(std::optional<std::uint64_t> limit) {
    batch_.clear();
    store_.read(next_, batchSize, batch_);
    while (limit && next_ > *limit && !batch_.empty()) {
        batch_.pop_back();
        --next_;
    }
    return !batch_.empty();
}

std::size_t ShownLines::trim() {
    if (rows_.size() <= mostLines_ + mostLines_ / 10 && bytes_ <= mostBytes_ + mostBytes_ / 10)
        return 0;
    const std::size_t before = rows_.size();
    while (rows_.size() > mostLines_ || (bytes_ > mostBytes_ && rows_.size() > 1)) {
        bytes_ -= bytesOf(*rows_.front().line);
        rows_.pop_front();
    }
    return before - rows_.size();
}

std::size_t ShownLines::held(const Counters& counters) const {
    const auto kept = std::partition_point(
        rows_.begin(), rows_.end(), [first = store_.first()](const Row& row) { return row.number < first; });
    return counters.held + static_cast<std::size_t>(kept - rows_.begin());
}

} // namespace tool::logpan
