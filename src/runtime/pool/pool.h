// A thread pool: jobs that wait, runners that call them, threads that wait for all of them.
//
// Each job that was taken is called exactly once, to run or to be discarded. No lock is held meanwhile.
//
// A runner takes jobs until there are none, so that a pool whose runners are busy costs a push for a job and
// nothing of the system's. A runner that finds none stays for some microseconds, for the next job.
//
// The pool ends itself: when its owner has let it go, its last runner reports so, on a thread that outlives
// it.
#pragma once

#include "platform/spin_lock.h"
#include "runtime/pool/job_queue.h"
#include "runtime/pool/pool_links.h"
#include "runtime/result.h"

#include <array>
#include <mutex>
#include <string_view>

namespace tvut {

// What a call on a pool returns.
struct scPoolOutcome {
    UtilResult result;
    std::size_t discards = 0; // jobs that the call discarded
    std::size_t left = 0;     // jobs that it would have had to wait for
};

class clsPool final : public IclsPoolRunner {
  public:
    static constexpr unsigned mostThreads = 256;
    static constexpr std::size_t mostWaiting = 1u << 20;
    static constexpr std::size_t longestName = 32;

    // Calls of a job and its discard.
    enum Reason : unsigned { run = 0, discarded = 1 };

    clsPool(std::u16string_view name, unsigned threads) noexcept;

    // Before everything else: what the runners run on. False: there is none.
    bool UseThreads(std::unique_ptr<IclsPoolThreads> threads) noexcept;

    // The owner's last call: the pool is deleted when its last runner has returned, never within this call.
    void LetGo() noexcept;

    UtilResult Add(scPoolJob job) noexcept;
    void Abort() noexcept;

    // Who must not wait, because others wait for him, gets inLoader where he would have to.
    scPoolOutcome Finalize(std::uint32_t milliseconds, bool mayWait) noexcept;

    // The pool takes no jobs any more. badArgument: somebody else closed it.
    scPoolOutcome Close(bool mayWait) noexcept;

    std::u16string_view Name() const noexcept { return {name_.data(), nameLength_}; }

    // Whether "too large" is to be reported: once, until the queue was half empty.
    bool TellsTooLarge() noexcept;

    bool Run(IclsBetweenCalls& between) noexcept override;

  private:
    // A thread that is calling jobs or discards.
    struct scCaller : clsLink<scCaller> {
        std::uint32_t thread = PlatformThreadId();
    };
    struct scWaiter : clsLink<scWaiter> {
        clsPoolSignal idle;
    };
    using Lock = std::unique_lock<clsSpinLock>;

    bool IsIdle() const noexcept { return calls_ == 0 && queue_.Empty(); }
    bool CalledFromJob() noexcept;
    bool HasRunner() noexcept;
    scPoolJob TakeJob() noexcept;
    bool NextJobComes(Lock& lock) noexcept;
    void CallEnds() noexcept;
    void TakeJobsAgain() noexcept;
    bool BecomesIdle(std::uint32_t milliseconds) noexcept;
    std::size_t DiscardAll() noexcept;
    void SetAbortWord(long value) noexcept;
    void CountWaiting() noexcept { waiting_.store(queue_.Count(), std::memory_order_relaxed); }

    std::array<char16_t, longestName> name_{};
    std::size_t nameLength_;
    const unsigned mostRunners_;
    std::unique_ptr<IclsPoolThreads> threads_;
    long abortWord_ = 0;                  // what jobs look at
    std::atomic<std::size_t> waiting_{0}; // as in the queue, for those who look without the lock

    clsSpinLock lock_; // over all that follows
    clsJobQueue queue_;
    clsLink<scCaller> callers_;
    clsLink<scWaiter> waiters_;
    unsigned runners_ = 0;     // that were started and have not returned
    unsigned keptThreads_ = 0; // that the system was asked for
    unsigned lingering_ = 0;   // of them, that look for a job
    std::size_t calls_ = 0;    // of jobs that run, and of threads that discard
    bool aborted_ = false;
    bool closing_ = false;
    bool letGo_ = false;
    bool toldTooLarge_ = false;
};

} // namespace tvut
