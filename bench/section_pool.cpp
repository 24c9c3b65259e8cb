// The thread pool against the system's own, and against no pool.
#include "sections.h"

#include <tvut22/tvut22.hpp>

#include <windows.h>

#include <atomic>

namespace bench {

namespace {

std::atomic<unsigned> called{0};

unsigned Jobs(const scSettings& settings) {
    return settings.quick ? 20000 : 300000;
}

// ---- The system's pool -----------------------------------------------------------------------------

// A pool of the system with two threads and whatever is called in it.
class clsSystemPool {
  public:
    clsSystemPool() : pool_(CreateThreadpool(nullptr)), group_(CreateThreadpoolCleanupGroup()) {
        SetThreadpoolThreadMaximum(pool_, threads);
        InitializeThreadpoolEnvironment(&environment);
        SetThreadpoolCallbackPool(&environment, pool_);
    }
    ~clsSystemPool() {
        CloseThreadpoolCleanupGroup(group_);
        CloseThreadpool(pool_);
    }
    clsSystemPool(const clsSystemPool&) = delete;
    clsSystemPool& operator=(const clsSystemPool&) = delete;

    static constexpr unsigned threads = 2;
    TP_CALLBACK_ENVIRON environment;
    PTP_CLEANUP_GROUP Group() const { return group_; }

  private:
    PTP_POOL pool_;
    PTP_CLEANUP_GROUP group_;
};

// Work that the system does as often as it is submitted.
class clsSystemWork {
  public:
    clsSystemWork(clsSystemPool& pool, PTP_WORK_CALLBACK call)
        : work_(CreateThreadpoolWork(call, this, &pool.environment)) {}
    ~clsSystemWork() { CloseThreadpoolWork(work_); }
    clsSystemWork(const clsSystemWork&) = delete;
    clsSystemWork& operator=(const clsSystemWork&) = delete;

    void Submit() const { SubmitThreadpoolWork(work_); }
    void Wait() const { WaitForThreadpoolWorkCallbacks(work_, FALSE); }

  private:
    PTP_WORK work_;
};

void CALLBACK CountedWork(PTP_CALLBACK_INSTANCE, void*, PTP_WORK) {
    called.fetch_add(1, std::memory_order_relaxed);
}
void CALLBACK CountedCall(PTP_CALLBACK_INSTANCE, void*) {
    called.fetch_add(1, std::memory_order_relaxed);
}
void TVUT22_CALL CountedJob(UINT, UINT_PTR, const volatile LONG*) {
    called.fetch_add(1, std::memory_order_relaxed);
}

// Nanoseconds a job of work that has all of them called.
template <typename Work>
double PerJob(unsigned jobs, Work work) {
    called = 0;
    const double ns = Timed(work);
    Require(called == jobs, "a job was not called, or twice");
    return ns / jobs;
}

// ---- Empty jobs ------------------------------------------------------------------------------------

void Add(UtilThreadPool pool, UtilThreadPoolJob job, UINT_PTR user) {
    Require(UtilThreadPoolAdd(pool, job, user) == UTIL_OK, "UtilThreadPoolAdd");
}

void Finish(UtilThreadPool pool) {
    Require(UtilThreadPoolFinalize(pool, UTIL_POOL_FOREVER) == UTIL_OK, "UtilThreadPoolFinalize");
}

double PerJobInPool(UtilThreadPool pool, UtilThreadPoolJob job, unsigned jobs, UINT_PTR user) {
    return PerJob(jobs, [=] {
        for (unsigned i = 0; i < jobs; ++i)
            Add(pool, job, user);
        Finish(pool);
    });
}

void MeasureEmptyJobs(const scSettings& settings, clsReport& report) {
    const unsigned jobs = Jobs(settings);
    const tvut22::thread_pool pool(L"bench", clsSystemPool::threads);
    clsSystemPool system;
    const clsSystemWork work(system, CountedWork);
    const Round rounds[] = {
        [&] { return PerJobInPool(pool.get(), CountedJob, jobs, 0); },
        [&] {
            return PerJob(jobs, [&] {
                for (unsigned i = 0; i < jobs; ++i)
                    work.Submit();
                work.Wait();
            });
        },
        [&] {
            SetThreadpoolCallbackCleanupGroup(&system.environment, system.Group(), nullptr);
            return PerJob(jobs, [&] {
                for (unsigned i = 0; i < jobs; ++i)
                    Require(TrySubmitThreadpoolCallback(CountedCall, nullptr, &system.environment) != FALSE,
                            "TrySubmitThreadpoolCallback");
                CloseThreadpoolCleanupGroupMembers(system.Group(), FALSE, nullptr);
            });
        }};
    const auto ns = Race(rounds, settings.rounds);
    report.Against("an empty job, added by one thread", ns[0], "SubmitThreadpoolWork", ns[1], AtMost(0.5));
    report.Against("an empty job, added by one thread", ns[0], "TrySubmitThreadpoolCallback", ns[2],
                   AtMost(0.25));
}

// ---- Jobs that add jobs ----------------------------------------------------------------------------

constexpr int treeDepth = 18, quickTreeDepth = 14;
std::atomic<UtilThreadPool> treePool{nullptr};
std::atomic<const clsSystemWork*> treeWork{nullptr};
std::atomic<unsigned> treeLeft{0};

void TVUT22_CALL TreeJob(UINT, UINT_PTR depth, const volatile LONG*) {
    called.fetch_add(1, std::memory_order_relaxed);
    for (int i = 0; i < 2 && depth > 0; ++i)
        UtilThreadPoolAdd(treePool.load(std::memory_order_relaxed), TreeJob, depth - 1);
}

// The system hands nothing over with each submission, so the tree is given by the count of what is left.
void CALLBACK TreeCall(PTP_CALLBACK_INSTANCE, void*, PTP_WORK) {
    called.fetch_add(1, std::memory_order_relaxed);
    for (int i = 0; i < 2; ++i) {
        unsigned left = treeLeft.load(std::memory_order_relaxed);
        while (left > 0 && !treeLeft.compare_exchange_weak(left, left - 1, std::memory_order_relaxed)) {
        }
        if (left > 0)
            treeWork.load(std::memory_order_relaxed)->Submit();
    }
}

void MeasureTree(const scSettings& settings, clsReport& report) {
    const int depth = settings.quick ? quickTreeDepth : treeDepth;
    const unsigned jobs = (2u << depth) - 1;
    const tvut22::thread_pool pool(L"bench", clsSystemPool::threads);
    clsSystemPool system;
    const clsSystemWork work(system, TreeCall);
    treePool = pool.get();
    treeWork = &work; // cppcheck-suppress danglingLifetime ; nothing calls it after this function
    const Round rounds[] = {[&] {
                                return PerJob(jobs, [&] {
                                    Add(pool.get(), TreeJob, static_cast<UINT_PTR>(depth));
                                    Finish(pool.get());
                                });
                            },
                            [&] {
                                treeLeft = jobs - 1;
                                return PerJob(jobs, [&] {
                                    work.Submit();
                                    work.Wait();
                                });
                            }};
    const auto ns = Race(rounds, settings.rounds);
    report.Against("an empty job, added by a job", ns[0], "SubmitThreadpoolWork in a callback", ns[1],
                   AtMost(0.7));
}

// ---- The first job ---------------------------------------------------------------------------------

std::atomic<double> begunAt{0};

void TVUT22_CALL BeginJob(UINT, UINT_PTR, const volatile LONG*) {
    begunAt = NowNs();
}
void CALLBACK BeginWork(PTP_CALLBACK_INSTANCE, void*, PTP_WORK) {
    begunAt = NowNs();
}

// A job into a pool that has been idle for a moment, until it has begun.
template <typename Start>
double UntilBegun(Start start) {
    Sleep(2);
    begunAt = 0;
    const double from = NowNs();
    start();
    double begun = 0;
    while ((begun = begunAt) == 0)
        SwitchToThread();
    return begun - from;
}

void MeasureFirstJob(const scSettings& settings, clsReport& report) {
    const tvut22::thread_pool pool(L"bench", clsSystemPool::threads);
    clsSystemPool system;
    const clsSystemWork work(system, BeginWork);
    const int times = settings.quick ? 3 : 25;
    const auto median = [times](auto start) {
        std::vector<double> all;
        for (int i = 0; i < times; ++i)
            all.push_back(UntilBegun(start));
        return Median(all);
    };
    const Round rounds[] = {[&] { return median([&] { Add(pool.get(), BeginJob, 0); }); },
                            [&] { return median([&] { work.Submit(); }); }};
    const auto ns = Race(rounds, settings.rounds);
    report.Against("a job into an idle pool, until it has begun", ns[0], "SubmitThreadpoolWork", ns[1],
                   AtMost(1.2));
}

// ---- Jobs that compute -----------------------------------------------------------------------------

std::size_t turnsInMicrosecond = 0;

void Compute(std::size_t microseconds) {
    std::size_t value = microseconds;
    for (std::size_t turn = microseconds * turnsInMicrosecond; turn > 0; --turn)
        value = value * 1664525 + 1013904223;
    Consume(value);
}

void Calibrate() {
    turnsInMicrosecond = 1000;
    std::vector<double> all;
    for (int i = 0; i < 21; ++i)
        all.push_back(Timed([] { Compute(1000); }));
    turnsInMicrosecond = static_cast<std::size_t>(1000 * 1000 * 1000.0 / Median(all));
}

void TVUT22_CALL ComputeJob(UINT, UINT_PTR microseconds, const volatile LONG*) {
    Compute(microseconds);
    called.fetch_add(1, std::memory_order_relaxed);
}

struct scComputing {
    const char* work;
    unsigned jobs;
    UINT_PTR microseconds;
    double goal;
};

void MeasureComputing(const scSettings& settings, clsReport& report, const scComputing& computing) {
    const tvut22::thread_pool pool(L"bench", clsSystemPool::threads);
    const unsigned jobs = settings.quick ? computing.jobs / 10 : computing.jobs;
    const UINT_PTR microseconds = computing.microseconds;
    const Round rounds[] = {[&] { return PerJobInPool(pool.get(), ComputeJob, jobs, microseconds); },
                            [&] {
                                return PerJob(jobs, [&] {
                                    for (unsigned i = 0; i < jobs; ++i)
                                        ComputeJob(UTIL_POOL_RUN, microseconds, nullptr);
                                });
                            }};
    const auto ns = Race(rounds, settings.rounds);
    report.FasterThan(computing.work, ns[0], "a loop on one thread", ns[1], AtLeast(computing.goal));
}

// The run is pinned to one processor, which is no place for a pool of two threads.
class clsAllProcessors {
  public:
    clsAllProcessors() {
        DWORD_PTR system = 0;
        GetProcessAffinityMask(GetCurrentProcess(), &before_, &system);
        SetProcessAffinityMask(GetCurrentProcess(), system);
    }
    ~clsAllProcessors() { SetProcessAffinityMask(GetCurrentProcess(), before_); }
    clsAllProcessors(const clsAllProcessors&) = delete;
    clsAllProcessors& operator=(const clsAllProcessors&) = delete;

  private:
    DWORD_PTR before_ = 0;
};

// ---- Memory ----------------------------------------------------------------------------------------

HANDLE jobsMayGoOn = nullptr;

void TVUT22_CALL HoldJob(UINT, UINT_PTR, const volatile LONG*) {
    WaitForSingleObject(jobsMayGoOn, INFINITE);
}

// In a process of its own, which ends with what it has opened.
UtilThreadPool probedPool = nullptr;

// Bytes in blocks that are in use, of all heaps of the process.
std::size_t BusyHeapBytes() {
    HANDLE heaps[64];
    std::size_t bytes = 0;
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(std::size(heaps)), heaps);
    Require(count <= std::size(heaps), "there are too many heaps");
    for (DWORD i = 0; i < count; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heaps[i], &entry))
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) ? entry.cbData : 0;
    }
    return bytes;
}

void MeasurePoolMemory(const scSettings& settings, clsReport& report) {
    const auto perOne = [&](const wchar_t* way, unsigned count) {
        return static_cast<double>(RunMemoryProbe(way, settings.folder)) / count;
    };
    constexpr double itsOwn = sizeof(UtilThreadPoolJob) + sizeof(UINT_PTR), page = 4096;
    report.Bytes("a waiting job", perOne(L"waiting", waitingJobs), "its function and its argument", itsOwn,
                 AtMost(17));
    report.Bytes("an idle pool", perOne(L"pools", idlePools), "a page", page, AtMost(8192));
    report.Bytes("what 1,000,000 jobs leave", perOne(L"jobs", 1), "a block of the queue", page, AtMost(page));
}

} // namespace

void AddWaitingJobs(unsigned jobs) {
    if (!probedPool) {
        jobsMayGoOn = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        probedPool = UtilThreadPoolOpen(L"bench", 1, 0);
        Add(probedPool, HoldJob, 0);
    }
    for (unsigned i = 0; i < jobs; ++i)
        Add(probedPool, CountedJob, 0);
}

// All of them wait before the first one runs. A job before them has made the system's thread and the block
// that the queue stands in.
std::size_t BytesKeptAfterJobs() {
    constexpr unsigned jobs = 1000000;
    AddWaitingJobs(1);
    SetEvent(jobsMayGoOn);
    Finish(probedPool);
    const std::size_t before = BusyHeapBytes();
    ResetEvent(jobsMayGoOn);
    Add(probedPool, HoldJob, 0);
    AddWaitingJobs(jobs);
    Require(BusyHeapBytes() - before > jobs * sizeof(UtilThreadPoolJob), "the jobs do not wait");
    SetEvent(jobsMayGoOn);
    Finish(probedPool);
    return BusyHeapBytes() - before;
}

void OpenIdlePools(unsigned pools) {
    for (unsigned i = 0; i < pools; ++i)
        Require(UtilThreadPoolOpen(L"bench", 0, 0) != nullptr, "UtilThreadPoolOpen");
}

void MeasurePool(const scSettings& settings, clsReport& report) {
    report.Section("Thread pool: two threads on two processors");
    const clsAllProcessors all;
    Calibrate();
    MeasureEmptyJobs(settings, report);
    MeasureTree(settings, report);
    MeasureFirstJob(settings, report);
    MeasureComputing(settings, report, {"200 jobs of 1 ms", 200, 1000, 1.8});
    MeasureComputing(settings, report, {"20,000 jobs of 10 us", 20000, 10, 1.7});
    MeasurePoolMemory(settings, report);
    report.Remark("Unlike all other sections this one is not pinned to one processor.");
}

} // namespace bench
