// All state changes under one lock that is held for tens of instructions. The pool is idle when no job waits
// and no call is under way; the change to idle is made by whoever ends the last call, and seen by all who
// wait for it then, even if jobs are added at once. A runner counts as a call only while it is in a job, so
// that a pool is idle while its runners still return.
#include "runtime/pool/pool.h"

#include <algorithm>
#include <utility>

namespace tvut {

namespace {

// How often a runner looks for another job before it returns: some microseconds, less than it takes to have
// the system start a runner again.
constexpr unsigned mostLooks = 50;

} // namespace

clsPool::clsPool(std::u16string_view name, unsigned threads) noexcept
    : nameLength_(std::min(name.size(), longestName)), mostRunners_(std::min(threads, mostThreads)) {
    std::copy_n(name.data(), nameLength_, name_.data());
}

bool clsPool::UseThreads(std::unique_ptr<IclsPoolThreads> threads) noexcept {
    threads_ = std::move(threads);
    return threads_ != nullptr;
}

void clsPool::LetGo() noexcept {
    const bool isPrepared = threads_->Prepare();
    const std::lock_guard lock(lock_);
    letGo_ = true;
    if (runners_ == 0 && isPrepared) {
        ++runners_;
        threads_->Start();
    }
}

// ---- Adding ----------------------------------------------------------------------------------------

UtilResult clsPool::Add(scPoolJob job) noexcept {
    if (!threads_->Prepare())
        return UtilResult::failed;
    const std::lock_guard lock(lock_);
    if (aborted_)
        return UtilResult::cancelled;
    if (queue_.Count() == mostWaiting)
        return UtilResult::tooLarge;
    if (!queue_.Reserve() || !HasRunner())
        return UtilResult::failed;
    queue_.Push(job);
    CountWaiting();
    return UtilResult::ok;
}

// Whether one more job in the queue will find a runner; starts one where more are allowed. Where the system
// has no thread for it, the others do the work.
bool clsPool::HasRunner() noexcept {
    if (runners_ == mostRunners_ || lingering_ > queue_.Count())
        return true;
    if (runners_ >= keptThreads_) {
        if (!threads_->Keep(runners_ + 1))
            return runners_ > 0;
        keptThreads_ = runners_ + 1;
    }
    ++runners_;
    threads_->Start();
    return true;
}

bool clsPool::TellsTooLarge() noexcept {
    const std::lock_guard lock(lock_);
    return !std::exchange(toldTooLarge_, true);
}

// ---- Running ---------------------------------------------------------------------------------------

bool clsPool::Run(IclsBetweenCalls& between) noexcept {
    scCaller self;
    Lock lock(lock_);
    self.Join(callers_);
    for (bool first = true; !queue_.Empty() || NextJobComes(lock); first = false) {
        const scPoolJob job = TakeJob();
        ++calls_;
        lock.unlock();
        if (!first)
            between.BetweenCalls();
        job.function(run, job.user, &abortWord_);
        lock.lock();
        CallEnds();
    }
    self.Leave();
    if (--runners_ == 0) {
        threads_->Rest();
        keptThreads_ = 0;
    }
    return letGo_ && runners_ == 0;
}

scPoolJob clsPool::TakeJob() noexcept {
    const scPoolJob job = queue_.Pop();
    CountWaiting();
    if (queue_.Count() < mostWaiting / 2)
        toldTooLarge_ = false;
    return job;
}

// Looks for another job for a while, without the lock.
bool clsPool::NextJobComes(Lock& lock) noexcept {
    ++lingering_;
    lock.unlock();
    for (unsigned looks = 0; looks < mostLooks && waiting_.load(std::memory_order_relaxed) == 0; ++looks)
        PlatformPause(looks);
    lock.lock();
    --lingering_;
    return !queue_.Empty();
}

void clsPool::CallEnds() noexcept {
    --calls_;
    if (!IsIdle() || !waiters_.First())
        return;
    TakeJobsAgain();
    while (scWaiter* const waiter = waiters_.First()) {
        waiter->Leave();
        waiter->idle.Set();
    }
}

// ---- Waiting ---------------------------------------------------------------------------------------

bool clsPool::CalledFromJob() noexcept {
    const std::uint32_t self = PlatformThreadId();
    const std::lock_guard lock(lock_);
    return callers_.Find([self](const scCaller& caller) { return caller.thread == self; }) != nullptr;
}

// Somebody waited until the pool was idle, which it is: an abort is over.
void clsPool::TakeJobsAgain() noexcept {
    if (closing_)
        return;
    aborted_ = false;
    SetAbortWord(0);
}

// A moment at which the pool is idle. The thing to wait with is made without the lock: it is the system's.
bool clsPool::BecomesIdle(std::uint32_t milliseconds) noexcept {
    const auto isIdle = [&] {
        if (IsIdle())
            TakeJobsAgain();
        return IsIdle();
    };
    {
        const std::lock_guard lock(lock_);
        if (isIdle() || milliseconds == 0)
            return isIdle();
    }
    scWaiter waiter;
    {
        const std::lock_guard lock(lock_);
        if (isIdle())
            return true;
        waiter.Join(waiters_);
    }
    waiter.idle.Wait(milliseconds);
    const std::lock_guard lock(lock_);
    waiter.Leave();
    return waiter.idle.IsSet();
}

scPoolOutcome clsPool::Finalize(std::uint32_t milliseconds, bool mayWait) noexcept {
    if (CalledFromJob())
        return {UtilResult::fromJob};
    if (BecomesIdle(mayWait ? milliseconds : 0))
        return {UtilResult::ok};
    if (mayWait)
        return {UtilResult::timeout};
    const std::lock_guard lock(lock_);
    return {UtilResult::inLoader, 0, calls_ + queue_.Count()};
}

// ---- Discarding ------------------------------------------------------------------------------------

void clsPool::SetAbortWord(long value) noexcept {
    std::atomic_ref(abortWord_).store(value, std::memory_order_release);
}

// Aborts. While it discards, the pool is not idle, so that nobody takes the abort back.
std::size_t clsPool::DiscardAll() noexcept {
    clsJobQueue jobs;
    scCaller self;
    {
        const std::lock_guard lock(lock_);
        aborted_ = true;
        SetAbortWord(1);
        toldTooLarge_ = false;
        if (queue_.Empty())
            return 0;
        queue_.MoveTo(jobs);
        CountWaiting();
        self.Join(callers_);
        ++calls_;
    }
    const std::size_t count = jobs.Count();
    while (!jobs.Empty()) {
        const scPoolJob job = jobs.Pop();
        job.function(discarded, job.user, &abortWord_);
    }
    const std::lock_guard lock(lock_);
    self.Leave();
    CallEnds();
    return count;
}

void clsPool::Abort() noexcept {
    DiscardAll();
}

scPoolOutcome clsPool::Close(bool mayWait) noexcept {
    if (CalledFromJob())
        return {UtilResult::fromJob};
    bool first = false;
    {
        const std::lock_guard lock(lock_);
        first = !std::exchange(closing_, true);
        aborted_ = true;
    }
    const std::size_t discards = DiscardAll();
    if (!BecomesIdle(mayWait ? clsPoolSignal::forever : 0)) {
        const std::lock_guard lock(lock_);
        return {UtilResult::inLoader, discards, calls_};
    }
    if (!first)
        return {UtilResult::badArgument, discards};
    return {discards == 0 ? UtilResult::ok : UtilResult::jobsLeft, discards};
}

} // namespace tvut
