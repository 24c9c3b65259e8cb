// The thread pool's state machine on native threads: exactly one call a job, whatever others do meanwhile.
#include "runtime/pool/pools.h"
#include "unit/native_platform.h"
#include "unit/native_pool.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <thread>

using namespace tvut;

namespace {

// ---- Jobs that count their calls -------------------------------------------------------------------

struct scSchedule;

struct scJob {
    scSchedule* schedule = nullptr;
    unsigned does = 0; // what it does when it runs
    bool taken = false;
    std::atomic<int> runs{0}, discards{0};
};

bool Stops(const volatile long* abort) {
    return std::atomic_ref(const_cast<long&>(*abort)).load() == 1;
}

// A pool under the hands of several threads, and what they expect of it.
struct scSchedule {
    scSchedule(unsigned threads, bool isClosed)
        : most(threads), closes(isClosed), pool(UtilpOpenPool(u"random", threads, false)) {}

    const unsigned most;
    const bool closes; // one of the threads does, so that the handle may be gone at any time
    const std::uint32_t pool;
    std::atomic<unsigned> running{0};
    std::atomic<unsigned> next{0};
    std::vector<scJob> jobs{std::vector<scJob>(2000)};

    void Add(unsigned does) {
        const unsigned index = next++;
        if (index >= jobs.size())
            return;
        scJob& job = jobs[index];
        job.schedule = this;
        job.does = does;
        const UtilResult result = UtilpAddToPool(pool, {Call, reinterpret_cast<std::uintptr_t>(&job)});
        job.taken = result == UtilResult::ok;
        EXPECT_TRUE(job.taken || result == UtilResult::cancelled || result == UtilResult::badArgument);
    }

    static void Call(unsigned reason, std::uintptr_t user, const volatile long* abort) {
        auto& job = *reinterpret_cast<scJob*>(user);
        if (reason == clsPool::discarded) {
            ++job.discards;
            EXPECT_TRUE(Stops(abort));
        } else {
            EXPECT_LE(++job.schedule->running, job.schedule->most);
            ++job.runs;
        }
        job.schedule->FromWithin(job.does, abort);
        if (reason == clsPool::run)
            --job.schedule->running;
    }

    void FromWithin(unsigned does, const volatile long* abort) {
        if (does % 4 == 0)
            Add(does / 4);
        if (does % 13 == 0)
            Expect(UtilResult::ok, UtilpAbortPool(pool));
        if (does % 5 == 0)
            Expect(UtilResult::fromJob, UtilpFinalizePool(pool, does, true));
        if (does % 17 == 0)
            Expect(UtilResult::fromJob, UtilpClosePool(pool, does % 2 == 0));
        for (int looks = 0; does % 7 == 0 && looks < 100 && !Stops(abort); ++looks)
            std::this_thread::yield();
    }

    void Expect(UtilResult expected, UtilResult result) const {
        EXPECT_TRUE(result == expected || (closes && result == UtilResult::badArgument));
    }

    void FromOutside(std::mt19937& random) {
        const unsigned does = random() % 1000;
        if (does < 900)
            Add(static_cast<unsigned>(random() % 10000));
        else if (does < 940)
            UtilpAbortPool(pool);
        else if (does < 999)
            UtilpFinalizePool(pool, does % 2 == 0 ? clsPoolSignal::forever : does % 3, does % 7 != 0);
        else if (closes)
            UtilpClosePool(pool, random() % 2 == 0);
    }
};

TEST(Pool, CallsEachTakenJobOnceWhateverOthersDo) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        scSchedule schedule(1 + seed % 4, seed % 2 == 0);
        std::vector<std::thread> threads;
        for (unsigned thread = 0; thread < 4; ++thread)
            threads.emplace_back([&schedule, seed, thread] {
                std::mt19937 random(seed * 4 + thread);
                for (int step = 0; step < 300; ++step)
                    schedule.FromOutside(random);
            });
        for (auto& thread : threads)
            thread.join();
        UtilpClosePool(schedule.pool, true);
        WaitForPoolThreads();
        EXPECT_EQ(UtilpAddToPool(schedule.pool, {}), UtilResult::badArgument);
        for (const scJob& job : schedule.jobs)
            ASSERT_EQ(job.runs + job.discards, job.taken ? 1 : 0) << "seed " << seed;
    }
}

// ---- One thing at a time ---------------------------------------------------------------------------

// Jobs that wait to be let through, one after the other.
struct scGate {
    std::atomic<int> passes{0}, begun{0}, discards{0};
    std::atomic<bool> heedsAbort{false};
    static void Call(unsigned reason, std::uintptr_t user, const volatile long* aborted) {
        auto& gate = *reinterpret_cast<scGate*>(user);
        if (reason == clsPool::discarded) {
            ++gate.discards;
            return;
        }
        ++gate.begun;
        while (gate.passes.fetch_sub(1) <= 0) {
            ++gate.passes;
            if (gate.heedsAbort && std::atomic_ref(const_cast<long&>(*aborted)).load() != 0)
                return;
            std::this_thread::yield();
        }
    }
    scPoolJob Job() { return {Call, reinterpret_cast<std::uintptr_t>(this)}; }
};

TEST(Pool, TakesNoMoreThanItHasRoomFor) {
    scGate gate;
    const std::uint32_t pool = UtilpOpenPool(u"a name that is longer than thirty-two", 1, false);
    ASSERT_EQ(UtilpAddToPool(pool, gate.Job()), UtilResult::ok);
    while (gate.begun == 0)
        std::this_thread::yield();
    const auto fill = [&](std::size_t jobs) {
        for (std::size_t i = 0; i < jobs; ++i)
            ASSERT_EQ(UtilpAddToPool(pool, gate.Job()), UtilResult::ok) << i;
        DiagnosticLines().clear();
        EXPECT_EQ(UtilpAddToPool(pool, gate.Job()), UtilResult::tooLarge);
        EXPECT_EQ(UtilpAddToPool(pool, gate.Job()), UtilResult::tooLarge);
    };
    const std::vector<std::u16string> told{
        u"Error: UtilThreadPoolAdd('a name that is longer than thirt'): 1048576 jobs are waiting"};
    fill(clsPool::mostWaiting);
    EXPECT_EQ(DiagnosticLines(), told);
    gate.passes += 1000;
    while (gate.begun != 1001)
        std::this_thread::yield();
    fill(1000);
    EXPECT_TRUE(DiagnosticLines().empty()) << "it was told already";
    gate.passes += static_cast<int>(clsPool::mostWaiting / 2 + 1);
    while (gate.begun != 1002 + static_cast<int>(clsPool::mostWaiting / 2))
        std::this_thread::yield();
    fill(clsPool::mostWaiting / 2 + 1);
    EXPECT_EQ(DiagnosticLines(), told);
    gate.heedsAbort = true; // a pass would let the next one begin
    EXPECT_EQ(UtilpClosePool(pool, true), UtilResult::jobsLeft);
    EXPECT_EQ(gate.discards, static_cast<int>(clsPool::mostWaiting));
    WaitForPoolThreads();
}

TEST(Pool, SaysNoWithoutThreads) {
    scGate gate;
    gate.passes = 1;
    const std::uint32_t pool = UtilpOpenPool(u"", 2, false);
    g_noThreads = true;
    EXPECT_EQ(UtilpAddToPool(pool, gate.Job()), UtilResult::failed);
    g_noThreads = false;
    EXPECT_EQ(UtilpAddToPool(pool, gate.Job()), UtilResult::ok);
    EXPECT_EQ(UtilpFinalizePool(pool, clsPoolSignal::forever, true), UtilResult::ok);
    EXPECT_EQ(gate.begun, 1) << "what was not taken is not called";
    EXPECT_EQ(UtilpClosePool(pool, true), UtilResult::ok);
    WaitForPoolThreads();
}

TEST(Pool, NeverWaitsInTheLoader) {
    scGate gate;
    const std::uint32_t pool = UtilpOpenPool(u"L", 1, false);
    EXPECT_EQ(UtilpFinalizePool(pool, 0, false), UtilResult::ok) << "there is nothing to wait for";
    for (int i = 0; i < 3; ++i)
        UtilpAddToPool(pool, gate.Job());
    while (gate.begun == 0)
        std::this_thread::yield();
    DiagnosticLines().clear();
    EXPECT_EQ(UtilpFinalizePool(pool, 0, true), UtilResult::timeout);
    EXPECT_EQ(UtilpFinalizePool(pool, clsPoolSignal::forever, false), UtilResult::inLoader);
    EXPECT_EQ(UtilpClosePool(pool, false), UtilResult::inLoader);
    EXPECT_EQ(gate.discards, 2);
    EXPECT_EQ(UtilpClosePool(pool, false), UtilResult::badArgument);
    EXPECT_EQ(DiagnosticLines(),
              (std::vector<std::u16string>{
                  u"Error: UtilThreadPoolFinalize('L'): called from within the loader while 3 jobs run",
                  u"Error: UtilThreadPoolClose('L'): called from within the loader while 1 jobs run",
                  u"Warning: UtilThreadPoolClose('L'): 2 jobs discarded"}));
    gate.passes = 1;
    WaitForPoolThreads();
}

TEST(Pool, IsClosedOnceForAllWhoCloseIt) {
    scGate gate;
    const std::uint32_t pool = UtilpOpenPool(u"", 2, false);
    UtilpAddToPool(pool, gate.Job());
    while (gate.begun == 0)
        std::this_thread::yield();
    std::atomic<int> closed{0}, refused{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            const UtilResult result = UtilpClosePool(pool, true);
            ++(result == UtilResult::badArgument ? refused : closed);
        });
    while (UtilpAddToPool(pool, gate.Job()) == UtilResult::ok)
        std::this_thread::yield();
    EXPECT_EQ(UtilpAddToPool(pool, gate.Job()), UtilResult::cancelled);
    EXPECT_EQ(UtilpFinalizePool(pool, 1, true), UtilResult::timeout);
    gate.passes += 1000;
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(refused, 2);
    WaitForPoolThreads();
}

// ---- The queue -------------------------------------------------------------------------------------

TEST(JobQueue, HoldsWhatAModelHolds) {
    std::mt19937 random(5);
    clsJobQueue queue;
    std::deque<std::uintptr_t> model;
    std::uintptr_t next = 0;
    for (int turn = 0; turn < 3000; ++turn) {
        const bool grows = random() % 2 == 0;
        for (unsigned left = random() % 1500; left > 0; --left) {
            if (random() % 500 == 0)
                ASSERT_TRUE(queue.Reserve()); // and no job after it
            if (grows) {
                ASSERT_TRUE(queue.Reserve());
                queue.Push({nullptr, next});
                model.push_back(next++);
            } else if (!model.empty()) {
                ASSERT_EQ(queue.Pop().user, model.front());
                model.pop_front();
            }
            ASSERT_EQ(queue.Count(), model.size());
        }
        if (random() % 50 == 0) {
            clsJobQueue moved;
            queue.MoveTo(moved);
            ASSERT_TRUE(queue.Empty());
            for (; !model.empty(); model.pop_front())
                ASSERT_EQ(moved.Pop().user, model.front());
        }
    }
}

} // namespace
