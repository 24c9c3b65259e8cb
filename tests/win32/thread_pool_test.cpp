// The thread pool on the system's threads: who is called where, who may wait, and how a process ends around
// it.
#include "support/copy.h"
#include "support/roles.h"

#include <tvut22/tvut22.hpp>

#include <algorithm>
#include <atomic>
#include <functional>
#include <tlhelp32.h>
#include <vector>

namespace testing_prof {
namespace {

using tvut22::thread_pool;

// Called with the reason and the abort word, exactly once each.
using Body = std::function<void(UINT reason, const volatile LONG& abort)>;

void TVUT22_CALL callBody(UINT reason, UINT_PTR user, const volatile LONG* abort) {
    const std::unique_ptr<Body> body(reinterpret_cast<Body*>(user));
    (*body)(reason, *abort);
}

INT add(const thread_pool& pool, Body body) {
    auto moved = std::make_unique<Body>(std::move(body));
    const INT result = UtilThreadPoolAdd(pool.get(), callBody, reinterpret_cast<UINT_PTR>(moved.get()));
    if (result == UTIL_OK)
        moved.release();
    return result;
}

// A job that waits until it is let go.
class Gate {
  public:
    void hold(const thread_pool& pool) {
        ASSERT_EQ(pool.add([this] {
            begun = true;
            WaitForSingleObject(event_.get(), INFINITE);
        }),
                  UTIL_OK);
        while (!begun)
            SwitchToThread();
    }
    void open() const { SetEvent(event_.get()); }

    std::atomic<bool> begun{false};

  private:
    Handle event_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

// ---- Running ---------------------------------------------------------------------------------------

TEST(ThreadPool, RunsAsManyJobsAtATimeAsAsked) {
    for (const UINT threads : {1u, 3u, 7u}) {
        const thread_pool pool(nullptr, threads);
        std::atomic<UINT> running{0}, most{0};
        for (int i = 0; i < 300; ++i)
            ASSERT_EQ(pool.add([&] {
                const UINT now = ++running;
                for (UINT seen = most; seen < now && !most.compare_exchange_weak(seen, now);) {
                }
                while (most < threads) // until all of them were here at once
                    SwitchToThread();
                --running;
            }),
                      UTIL_OK);
        ASSERT_EQ(pool.finalize(), UTIL_OK);
        EXPECT_EQ(most, threads);
    }
}

TEST(ThreadPool, WaitsForJobsThatJobsAdd) {
    const thread_pool pool(L"tree", 2), other(L"other", 1);
    std::atomic<int> called{0};
    const std::function<void(int)> branch = [&](int depth) {
        ++called;
        EXPECT_EQ(other.finalize(), UTIL_OK) << "another pool may be waited for";
        for (int i = 0; i < 2 && depth > 0; ++i)
            EXPECT_EQ(pool.add([&branch, depth] { branch(depth - 1); }), UTIL_OK);
    };
    ASSERT_EQ(pool.add([&] { branch(15); }), UTIL_OK);
    ASSERT_EQ(pool.finalize(), UTIL_OK);
    EXPECT_EQ(called, (1 << 16) - 1);
}

// The first job of a runner changes its priority; the next one finds it as it should be.
TEST(ThreadPool, PutsPrioritiesBack) {
    for (const UINT flags : {0u, UTIL_POOL_BACKGROUND}) {
        const int expected = flags ? THREAD_PRIORITY_BELOW_NORMAL : THREAD_PRIORITY_NORMAL;
        const thread_pool pool(L"priority", 1, flags);
        std::atomic<bool> isNextThere{false};
        std::vector<int> seen;
        const auto note = [&] { seen.push_back(GetThreadPriority(GetCurrentThread())); };
        const auto change = [&] {
            note();
            SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_HIGHEST);
            while (!isNextThere)
                SwitchToThread();
        };
        ASSERT_EQ(pool.add(change), UTIL_OK);
        ASSERT_EQ(pool.add(note), UTIL_OK);
        isNextThere = true;
        ASSERT_EQ(pool.finalize(), UTIL_OK);
        EXPECT_EQ(seen, std::vector<int>(2, expected));
    }
}

// ---- Waiting ---------------------------------------------------------------------------------------

constexpr UINT kAsked = WM_APP + 1, kPosted = WM_APP + 2;

LRESULT CALLBACK answer(HWND window, UINT message, WPARAM first, LPARAM second) {
    return message == kAsked ? static_cast<LRESULT>(first * 2)
                             : DefWindowProcW(window, message, first, second);
}

TEST(ThreadPool, AnswersSentMessagesWhileItWaits) {
    WNDCLASSW type{};
    type.lpfnWndProc = answer;
    type.lpszClassName = L"tvut22-pool-test";
    ASSERT_TRUE(RegisterClassW(&type));
    const HWND window =
        CreateWindowW(type.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_TRUE(window);
    thread_pool pool(L"window", 2);
    std::atomic<LRESULT> answers{0};
    const auto ask = [&] {
        PostMessageW(window, kPosted, 0, 0);
        answers += SendMessageW(window, kAsked, 21, 0);
    };
    ASSERT_EQ(pool.add(ask), UTIL_OK);
    ASSERT_EQ(pool.finalize(), UTIL_OK);
    ASSERT_EQ(pool.add(ask), UTIL_OK);
    while (pool.finalize(1) == UTIL_TIMEOUT) {
    }
    EXPECT_EQ(answers, 84);
    std::atomic<bool> runs{false};
    ASSERT_EQ(pool.add([&] {
        runs = true;
        ask();
    }),
              UTIL_OK);
    while (!runs)
        SwitchToThread();
    EXPECT_EQ(pool.reset(), UTIL_OK);
    EXPECT_EQ(answers, 126);
    MSG message;
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(PeekMessageW(&message, window, kPosted, kPosted, PM_REMOVE));
    DestroyWindow(window);
}

// ---- Aborting and closing --------------------------------------------------------------------------

TEST(ThreadPool, DiscardsOnTheThreadThatAborts) {
    const thread_pool pool(L"abort", 1);
    EXPECT_EQ(pool.abort(), UTIL_OK);
    EXPECT_EQ(pool.add([] {}), UTIL_CANCELLED);
    EXPECT_EQ(pool.finalize(), UTIL_OK);
    Gate gate;
    gate.hold(pool);
    std::vector<int> order;
    for (int i = 0; i < 50; ++i)
        ASSERT_EQ(add(pool,
                      [&, i, thread = GetCurrentThreadId()](UINT reason, const volatile LONG& abort) {
                          EXPECT_EQ(reason, UTIL_POOL_DISCARDED);
                          EXPECT_EQ(abort, 1);
                          EXPECT_EQ(GetCurrentThreadId(), thread);
                          order.push_back(i);
                      }),
                  UTIL_OK);
    EXPECT_EQ(pool.abort(), UTIL_OK);
    EXPECT_EQ(pool.abort(), UTIL_OK);
    EXPECT_EQ(order.size(), 50u);
    EXPECT_TRUE(std::ranges::is_sorted(order));
    EXPECT_EQ(pool.add([] {}), UTIL_CANCELLED);
    EXPECT_EQ(pool.finalize(0), UTIL_TIMEOUT);
    EXPECT_EQ(pool.add([] {}), UTIL_CANCELLED) << "it was not idle";
    gate.open();
    EXPECT_EQ(pool.finalize(), UTIL_OK);
    EXPECT_EQ(pool.add([] {}), UTIL_OK);
}

TEST(ThreadPool, OwnerFreesEachCallable) {
    const auto counted = std::make_shared<int>(0);
    thread_pool pool(L"owner", 1);
    Gate gate;
    gate.hold(pool);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(pool.add([kept = counted] { ++*kept; }), UTIL_OK);
    EXPECT_EQ(pool.abort(), UTIL_OK);
    EXPECT_EQ(pool.add([kept = counted] { ++*kept; }), UTIL_CANCELLED);
    gate.open();
    EXPECT_EQ(pool.finalize(), UTIL_OK);
    EXPECT_EQ(pool.add([kept = counted] { ++*kept; }), UTIL_OK);
    const INT closed = pool.reset();
    EXPECT_EQ(*counted, closed == UTIL_JOBS_LEFT ? 0 : 1);
    EXPECT_EQ(counted.use_count(), 1);
}

// ---- Handles ---------------------------------------------------------------------------------------

TEST(ThreadPool, RefusesHandlesThatAreNone) {
    thread_pool pool(L"handle", 1), closed(L"closed", 1);
    const UtilThreadPool old = closed.get();
    closed.reset();
    for (const UtilThreadPool none : {old, reinterpret_cast<UtilThreadPool>(&pool), UtilThreadPool{}}) {
        EXPECT_EQ(UtilThreadPoolAdd(none, callBody, 0), UTIL_BAD_ARGUMENT);
        EXPECT_EQ(UtilThreadPoolAbort(none), UTIL_BAD_ARGUMENT);
        EXPECT_EQ(UtilThreadPoolFinalize(none, UTIL_POOL_FOREVER), UTIL_BAD_ARGUMENT);
        EXPECT_EQ(UtilThreadPoolClose(none), none ? UTIL_BAD_ARGUMENT : UTIL_OK);
    }
    EXPECT_EQ(UtilThreadPoolAdd(pool.get(), nullptr, 0), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilThreadPoolOpen(L"flags", 1, 2), nullptr);
}

TEST(ThreadPool, ThereAreAtMost255) {
    std::vector<thread_pool> pools(255);
    for (auto& pool : pools)
        ASSERT_TRUE(pool = thread_pool(L"many", 1000));
    EXPECT_FALSE(thread_pool(L"one more"));
    pools.pop_back();
    EXPECT_TRUE(thread_pool(L"again"));
}

int threadsOfProcess() {
    const Handle all(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    int threads = 0;
    for (BOOL more = Thread32First(all.get(), &entry); more; more = Thread32Next(all.get(), &entry))
        threads += entry.th32OwnerProcessID == GetCurrentProcessId();
    return threads;
}

// The system gives the lowest number that is free.
UINT_PTR nextHandle() {
    return reinterpret_cast<UINT_PTR>(Handle(CreateEventW(nullptr, TRUE, FALSE, nullptr)).get());
}

#ifdef NDEBUG
constexpr int kPools = 10000;
#else
constexpr int kPools = 1000;
#endif

TEST(ThreadPool, LeavesNothingBehind) {
    const int threads = threadsOfProcess();
    const UINT_PTR handle = nextHandle();
    for (int i = 0; i < kPools; ++i) {
        const thread_pool pool(L"leaves", 2);
        if (i % 10 == 0) {
            ASSERT_EQ(pool.add([] {}), UTIL_OK);
        }
    }
    while (threadsOfProcess() > threads) // they end by themselves
        SwitchToThread();
    EXPECT_LE(nextHandle(), handle + 64);
}

void TVUT22_CALL doNothing(UINT, UINT_PTR, const volatile LONG*) {}

// The pool keeps the library, whose last reference goes when nobody is in its code.
TEST(ThreadPool, KeepsTheLibraryUntilItIsClosed) {
    const clsTempFolder folder;
    const std::wstring path = folder / L"copy.dll";
    clsCopy::MakeFile(path);
    for (int i = 0; i < 20; ++i) {
        clsCopy copy(path);
        ASSERT_TRUE(copy);
        auto* const close = copy.Find(UtilThreadPoolClose, "UtilThreadPoolClose");
        auto* const addJob = copy.Find(UtilThreadPoolAdd, "UtilThreadPoolAdd");
        const UtilThreadPool pool = copy.Find(UtilThreadPoolOpen, "UtilThreadPoolOpen")(L"kept", 2, 0);
        copy.Unload();
        for (int job = 0; job < i; ++job)
            EXPECT_EQ(addJob(pool, doNothing, 0), UTIL_OK);
        EXPECT_GE(close(pool), UTIL_JOBS_LEFT);
        while (GetModuleHandleW(path.c_str()))
            SwitchToThread();
    }
}

// ---- The loader, the end of the process ------------------------------------------------------------

void loadLibraries() {
    for (int i = 0; i < 5; ++i)
        FreeLibrary(LoadLibraryW(L"winmm.dll"));
}

// Jobs that use the loader until they are released.
std::atomic<int> begun{0};
std::atomic<bool> released{false};

void TVUT22_CALL useLoader(UINT reason, UINT_PTR, const volatile LONG*) {
    if (reason != UTIL_POOL_RUN)
        return;
    for (++begun; !released;)
        loadLibraries();
}

// A pool whose jobs do not end and of which more wait.
UtilThreadPool openBusyPool(UINT threads) {
    const UtilThreadPool pool = UtilThreadPoolOpen(L"busy", threads, 0);
    for (int i = 0; i < 50; ++i)
        UtilThreadPoolAdd(pool, useLoader, 0);
    while (begun < static_cast<int>(threads))
        SwitchToThread();
    return pool;
}

// Loads a library that uses pools in its DllMain while a job waits for the loader.
void useClientLibrary() {
    const UtilThreadPool pool = openBusyPool(1);
    SetEnvironmentVariableW(L"TVUT22_BUSY_POOL", std::to_wstring(reinterpret_cast<UINT_PTR>(pool)).c_str());
    for (int i = 0; i < 10; ++i) {
        const HMODULE client = LoadLibraryW(L"pool_client.dll");
        if (!client)
            ExitProcess(100);
        released = true;
        if (i < 9)
            FreeLibrary(client);
    }
    ExitProcess(17);
}

thread_pool ownedByTheProgram;

const Roles roles = {
    {"return", [] { openBusyPool(3); }},
    {"exit", [] { openBusyPool(3), ExitProcess(17); }},
    {"terminate", [] { openBusyPool(3), TerminateProcess(GetCurrentProcess(), 17); }},
    {"owner",
     [] {
         ownedByTheProgram = thread_pool(L"static", 2);
         for (int i = 0; i < 50; ++i)
             ownedByTheProgram.add(loadLibraries);
     }},
    {"client", useClientLibrary},
    {"throw",
     [] {
         const thread_pool pool(L"throws", 1);
         pool.add([] { throw 1; });
         pool.finalize();
     }},
};

TEST(ThreadPool, LetsTheProcessEnd) {
    for (const auto& [role, work] : roles) {
        for (int round = 0; round < 5; ++round) {
            const clsChild child(std::wstring(role.begin(), role.end()));
            ASSERT_EQ(child.ExitCodeUnlessItHangs(), role == "throw" ? 3u : 17u) << role;
        }
    }
}

} // namespace
} // namespace testing_prof

int main(int count, char** arguments) {
    return testing_prof::RunRoleOrTests(count, arguments, testing_prof::roles, 17);
}
