// Filters in small batches, and looks at the clock after each line: a regular expression may be slow.
#include "shown_lines.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::size_t batchSize = 256;

} // namespace

void ShownLines::setFilter(Filter filter) {
    filter_ = std::move(filter);
    lines_.clear();
    next_ = store_.first();
}

void ShownLines::clear() {
    store_.clear();
    lines_.clear();
    next_ = store_.first();
}

bool ShownLines::advance(std::chrono::milliseconds budget, std::optional<std::uint64_t> limit) {
    const Store::Clock::time_point end = Store::Clock::now() + budget;
    while (readBatch(limit))
        for (std::size_t at = 0; at < batch_.size(); ++at) {
            if (filter_.shows(*batch_[at]))
                lines_.push_back(std::move(batch_[at]));
            if (Store::Clock::now() >= end) {
                next_ -= batch_.size() - at - 1; // the rest of the batch comes again
                return true;
            }
        }
    return false;
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
    if (lines_.size() < most_ + most_ / 10 + 1)
        return 0;
    const std::size_t excess = lines_.size() - most_;
    lines_.erase(lines_.begin(), lines_.begin() + static_cast<std::ptrdiff_t>(excess));
    return excess;
}

} // namespace tool::logpan
