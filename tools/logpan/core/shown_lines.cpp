// Filters in small batches, and looks at the clock after each line: a regular expression may be slow.
#include "shown_lines.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::size_t batchSize = 256;

} // namespace

void clsShownLines::SetFilter(scFilter filter) {
    filter_ = std::move(filter);
    Begin();
}

void clsShownLines::SetStore(clsStore& store, std::size_t mostLines, std::size_t mostBytes) {
    store_ = &store;
    mostLines_ = mostLines;
    mostBytes_ = mostBytes;
    Begin();
}

void clsShownLines::Clear() {
    store_->Clear();
    Begin();
}

void clsShownLines::Begin() {
    rows_.clear();
    bytes_ = 0;
    next_ = store_->First();
}

bool clsShownLines::Advance(std::chrono::milliseconds budget, std::optional<std::uint64_t> limit) {
    const clsStore::Clock::time_point end = clsStore::Clock::now() + budget;
    while (ReadBatch(limit))
        for (std::size_t at = 0; at < batch_.size(); ++at) {
            const std::size_t left = batch_.size() - at - 1;
            if (filter_.Shows(*batch_[at]))
                Add(next_ - left - 1, std::move(batch_[at]));
            if (clsStore::Clock::now() >= end) {
                next_ -= left; // the rest of the batch comes again
                return true;
            }
        }
    return false;
}

void clsShownLines::Add(std::uint64_t number, LinePtr line) {
    bytes_ += BytesOf(*line);
    rows_.push_back({number, std::move(line)});
}

bool clsShownLines::ReadBatch(std::optional<std::uint64_t> limit) {
    batch_.clear();
    store_->Read(next_, batchSize, batch_);
    while (limit && next_ > *limit && !batch_.empty()) {
        batch_.pop_back();
        --next_;
    }
    return !batch_.empty();
}

std::size_t clsShownLines::Trim() {
    if (rows_.size() <= mostLines_ + mostLines_ / 10 && bytes_ <= mostBytes_ + mostBytes_ / 10)
        return 0;
    const std::size_t before = rows_.size();
    while (rows_.size() > mostLines_ || (bytes_ > mostBytes_ && rows_.size() > 1)) {
        bytes_ -= BytesOf(*rows_.front().line);
        rows_.pop_front();
    }
    return before - rows_.size();
}

std::size_t clsShownLines::Held(const scCounters& counters) const {
    const auto kept =
        std::partition_point(rows_.begin(), rows_.end(),
                             [first = store_->First()](const scRow& row) { return row.number < first; });
    return counters.held + static_cast<std::size_t>(kept - rows_.begin());
}

} // namespace tool::logpan
