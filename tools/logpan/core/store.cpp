// Locking around the joiner and the ring.
#include "store.h"

#include <algorithm>

namespace tool::logpan {

void Store::add(std::uint16_t port, const Packet& packet) {
    const Clock::time_point now = Clock::now();
    const std::lock_guard lock{mutex_};
    if (stopped_)
        return;
    joiner_.add(port, packet, now);
    settle(now);
    wake();
}

void Store::addText(std::wstring_view message, const Stamp& arrived) {
    const Clock::time_point now = Clock::now();
    const std::lock_guard lock{mutex_};
    if (stopped_)
        return;
    joiner_.addText(message, arrived, now);
    settle(now);
    wake();
}

void Store::refuse() {
    const std::lock_guard lock{mutex_};
    ++refused_;
}

std::uint64_t Store::read(std::uint64_t& number, std::size_t most, std::vector<LinePtr>& lines) {
    const std::lock_guard lock{mutex_};
    settle(Clock::now());
    const std::uint64_t start = std::max(number, ring_.first());
    const std::uint64_t skipped = start - number;
    const std::uint64_t end = std::min<std::uint64_t>(ring_.end(), start + most);
    for (number = start; number < end; ++number)
        lines.push_back(ring_.at(number));
    return skipped;
}

bool Store::wait(std::uint64_t number, std::optional<Clock::time_point> until) {
    std::unique_lock lock{mutex_};
    for (;;) {
        const Clock::time_point now = Clock::now();
        settle(now);
        if (number < ring_.end())
            return true;
        if (stopped_ || (until && *until <= now))
            return false;
        // A line may be complete earlier than it seems now, but it is never worth a wake-up of its own.
        const bool pending = joiner_.nextComplete().has_value();
        asleep_ = !pending;
        if (!pending && !until)
            changed_.wait(lock);
        else
            changed_.wait_until(lock, pending ? now + Joiner::moment : *until);
        asleep_ = false;
    }
}

void Store::stop() {
    {
        const std::lock_guard lock{mutex_};
        stopped_ = true;
    }
    changed_.notify_all();
}

void Store::clear() {
    const std::lock_guard lock{mutex_};
    ring_.clear();
}

Counters Store::counters() const {
    const std::lock_guard lock{mutex_};
    return {ring_.end(), joiner_.missing(), refused_, ring_.size()};
}

std::uint64_t Store::first() const {
    const std::lock_guard lock{mutex_};
    return ring_.first();
}

std::uint64_t Store::end() const {
    const std::lock_guard lock{mutex_};
    return ring_.end();
}

void Store::wake() {
    if (!asleep_)
        return;
    asleep_ = false;
    changed_.notify_one();
}

void Store::settle(Clock::time_point now) {
    while (std::optional<Line> line = joiner_.take(stopped_ ? Clock::time_point::max() : now))
        ring_.push(std::make_shared<const Line>(std::move(*line)));
}

} // namespace tool::logpan
