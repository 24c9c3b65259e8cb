// What a thread pool needs of the system, declared without Windows types: threads that call its runner, and a
// way to wait for it.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

namespace tvut {

// How a job or a discard is called: the reason, what its caller gave with it, the word that says "stop".
#ifdef _WIN32
using PoolFunction = void(__stdcall*)(unsigned, std::uintptr_t, const volatile long*);
#else
using PoolFunction = void (*)(unsigned, std::uintptr_t, const volatile long*);
#endif

// Between two calls that a runner makes for others.
class IclsBetweenCalls {
  public:
    virtual void BetweenCalls() noexcept = 0;

  protected:
    ~IclsBetweenCalls() = default;
};

// What the threads of a pool do.
class IclsPoolRunner {
  public:
    virtual ~IclsPoolRunner() = default;

    // Called once for each start, on a thread of the pool. True: no other call is under way or will come.
    // Then the threads delete the runner, and let the library go after that.
    virtual bool Run(IclsBetweenCalls& between) noexcept = 0;
};

// The threads of one pool. Start, Keep and Rest are called under the pool's lock, and after a Prepare.
class IclsPoolThreads {
  public:
    virtual ~IclsPoolThreads() = default;

    // Makes what the threads need of the system; cheap from the second time on. From any thread, under no
    // lock. False: no memory.
    virtual bool Prepare() noexcept = 0;

    // Sees to it that there are this many threads, and keeps them from now on. False: the system has fewer.
    virtual bool Keep(unsigned threads) noexcept = 0;

    // All threads may end when they have been idle for some seconds.
    virtual void Rest() noexcept = 0;

    // Has the runner called once by one of the threads.
    virtual void Start() noexcept = 0;
};

// Threads for a runner, at most this many; none is started. Null: no memory. While they are there the library
// is.
std::unique_ptr<IclsPoolThreads> PlatformMakePoolThreads(IclsPoolRunner& runner, unsigned most,
                                                         bool background) noexcept;

// A moment that one thread waits for. Where the system has no object to wait with, the thread looks now and
// then.
class clsPoolSignal {
  public:
    static constexpr std::uint32_t forever = 0xFFFFFFFF;

    clsPoolSignal() noexcept;
    ~clsPoolSignal();
    clsPoolSignal(const clsPoolSignal&) = delete;
    clsPoolSignal& operator=(const clsPoolSignal&) = delete;

    void Set() noexcept;
    bool IsSet() const noexcept { return set_.load(std::memory_order_acquire); }

    // Until it is set or the time is over, in milliseconds. A thread that has windows answers the messages
    // that other threads send to them meanwhile.
    void Wait(std::uint32_t milliseconds) noexcept;

  private:
    std::atomic<bool> set_{false};
    void* event_;
};

std::uint32_t PlatformThreadId() noexcept;

// The processors that the process may use.
unsigned PlatformProcessorCount() noexcept;

} // namespace tvut
