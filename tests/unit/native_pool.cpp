// A pool's threads in the native build: a thread of its own for each runner.
#include "unit/native_pool.h"

#include "platform/pool_threads.h"
#include "platform/spin_lock.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace tvut {

std::atomic<bool> g_noThreads{false};

namespace {

std::atomic<int> running{0};

class clsNothingBetween final : public IclsBetweenCalls {
  public:
    void BetweenCalls() noexcept override {}
};

class clsNativePoolThreads final : public IclsPoolThreads {
  public:
    explicit clsNativePoolThreads(IclsPoolRunner& runner) : runner_(runner) {}
    bool Prepare() noexcept override { return true; }
    bool Keep(unsigned) noexcept override { return !g_noThreads; }
    void Rest() noexcept override {}
    void Start() noexcept override {
        ++running;
        std::thread([&runner = runner_] {
            clsNothingBetween between;
            if (runner.Run(between))
                delete &runner;
            --running;
        }).detach();
    }

  private:
    IclsPoolRunner& runner_;
};

struct scEvent {
    std::mutex mutex;
    std::condition_variable condition;
};

} // namespace

void WaitForPoolThreads() {
    while (running != 0)
        std::this_thread::yield();
}

void PlatformPause(unsigned) noexcept {
    std::this_thread::yield();
}

std::unique_ptr<IclsPoolThreads> PlatformMakePoolThreads(IclsPoolRunner& runner, unsigned, bool) noexcept {
    return std::unique_ptr<IclsPoolThreads>(new (std::nothrow) clsNativePoolThreads(runner));
}

clsPoolSignal::clsPoolSignal() noexcept : event_(new scEvent) {}

clsPoolSignal::~clsPoolSignal() {
    delete static_cast<scEvent*>(event_);
}

void clsPoolSignal::Set() noexcept {
    auto& event = *static_cast<scEvent*>(event_);
    const std::lock_guard lock(event.mutex);
    set_ = true;
    event.condition.notify_all();
}

void clsPoolSignal::Wait(std::uint32_t milliseconds) noexcept {
    auto& event = *static_cast<scEvent*>(event_);
    std::unique_lock lock(event.mutex);
    const auto isSet = [&] { return IsSet(); };
    if (milliseconds == forever)
        event.condition.wait(lock, isSet);
    else
        event.condition.wait_for(lock, std::chrono::milliseconds(milliseconds), isSet);
}

std::uint32_t PlatformThreadId() noexcept {
    static std::atomic<std::uint32_t> threads{0};
    thread_local const std::uint32_t self = ++threads;
    return self;
}

} // namespace tvut
