// Locking around the joiner and the ring.
//
// Nothing waits under the lock, and lines are shared, not copied, so that a receiver is held up by a reader
// for no longer than it takes to copy some pointers. There is no thread of its own: whoever comes by moves
// the lines that are complete by now from the joiner to the ring.
#include "store.h"

#include <algorithm>

namespace tool::logpan {

void clsStore::Add(std::uint16_t port, const scPacket& packet) {
    const Clock::time_point now = Clock::now();
    const std::lock_guard lock{mutex_};
    if (stopped_)
        return;
    joiner_.Add(port, packet, now);
    Settle(now);
    Wake();
}

void clsStore::AddText(std::wstring_view message, const scStamp& arrived) {
    const Clock::time_point now = Clock::now();
    const std::lock_guard lock{mutex_};
    if (stopped_)
        return;
    joiner_.AddText(message, arrived, now);
    Settle(now);
    Wake();
}

void clsStore::AddLine(scLine line) {
    LinePtr whole = std::make_shared<const scLine>(std::move(line));
    const std::lock_guard lock{mutex_};
    ring_.Push(std::move(whole));
    Wake();
}

void clsStore::Refuse() {
    const std::lock_guard lock{mutex_};
    ++refused_;
}

std::uint64_t clsStore::Read(std::uint64_t& number, std::size_t most, std::vector<LinePtr>& lines) {
    const std::lock_guard lock{mutex_};
    Settle(Clock::now());
    const std::uint64_t start = std::max(number, ring_.First());
    const std::uint64_t skipped = start - number;
    const std::uint64_t end = std::min<std::uint64_t>(ring_.end(), start + most);
    for (number = start; number < end; ++number)
        lines.push_back(ring_.At(number));
    return skipped;
}

bool clsStore::Wait(std::uint64_t number, std::optional<Clock::time_point> until) {
    std::unique_lock lock{mutex_};
    for (;;) {
        const Clock::time_point now = Clock::now();
        Settle(now);
        if (number < ring_.end())
            return true;
        if (stopped_ || (until && *until <= now))
            return false;
        // A line may be complete earlier than it seems now, but it is never worth a wake-up of its own.
        const bool pending = joiner_.NextComplete().has_value();
        asleep_ = !pending;
        if (!pending && !until)
            changed_.wait(lock);
        else
            changed_.wait_until(lock, pending ? now + clsJoiner::moment : *until);
        asleep_ = false;
    }
}

void clsStore::Stop() {
    {
        const std::lock_guard lock{mutex_};
        stopped_ = true;
    }
    changed_.notify_all();
}

void clsStore::Clear() {
    const std::lock_guard lock{mutex_};
    ring_.Clear();
}

scCounters clsStore::Counters() const {
    const std::lock_guard lock{mutex_};
    return {ring_.end(), joiner_.Missing(), refused_, ring_.size()};
}

std::uint64_t clsStore::First() const {
    const std::lock_guard lock{mutex_};
    return ring_.First();
}

std::uint64_t clsStore::end() const {
    const std::lock_guard lock{mutex_};
    return ring_.end();
}

void clsStore::Wake() {
    if (!asleep_)
        return;
    asleep_ = false;
    changed_.notify_one();
}

void clsStore::Settle(Clock::time_point now) {
    while (std::optional<scLine> line = joiner_.Take(stopped_ ? Clock::time_point::max() : now))
        ring_.Push(std::make_shared<const scLine>(std::move(*line)));
}

} // namespace tool::logpan
