// A private pool of the system and one work object, which is submitted once for each runner: while its
// runners are busy, a pool asks the system for nothing.
//
// The last runner takes the pool apart. Each runs the library's code for a moment longer than the pool may be
// there, so the system is told which library its calls come into, and keeps that until they have returned.
#include "platform/pool_threads.h"

#include "platform/held_library.h"
#include "platform/loader.h"
#include "platform/owned.h"
#include "platform/thread_priority.h"

#include <atomic>
#include <bit>
#include <new>

namespace tvut {

namespace {

struct scPoolPolicy {
    using Value = PTP_POOL;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { CloseThreadpool(value); }
};

struct scWorkPolicy {
    using Value = PTP_WORK;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { CloseThreadpoolWork(value); }
};

class clsRunnerPriority final : public IclsBetweenCalls {
  public:
    explicit clsRunnerPriority(bool background) noexcept : priority_(background) {}
    void BetweenCalls() noexcept override { priority_.BetweenCalls(); }

  private:
    clsThreadPriority priority_;
};

class clsSystemPoolThreads final : public IclsPoolThreads {
  public:
    clsSystemPoolThreads(IclsPoolRunner& runner, bool background) noexcept
        : runner_(runner), background_(background) {}

    bool Open(unsigned most) noexcept {
        library_ = PlatformOwnLibrary();
        pool_ = clsOwned<scPoolPolicy>(CreateThreadpool(nullptr));
        if (!library_ || !pool_)
            return false;
        SetThreadpoolThreadMaximum(pool_.Get(), most);
        return true;
    }

    ~clsSystemPoolThreads() override { clsOwned<scWorkPolicy> closed(work_.load()); }

    // The system holds the library, which asks the loader, and may start a thread: so this is done when there
    // is work, and not under a lock that somebody within the loader may wait for. Of two that are made at
    // once one goes again.
    bool Prepare() noexcept override {
        if (work_.load(std::memory_order_acquire))
            return true;
        clsOwned<scWorkPolicy> made = MakeWork();
        PTP_WORK none = nullptr;
        if (made && work_.compare_exchange_strong(none, made.Get()))
            made.Take();
        return work_.load(std::memory_order_acquire) != nullptr;
    }

    // Left to itself the system would wait with another thread as long as the processors are busy, or give
    // none where two are wanted in one moment.
    bool Keep(unsigned threads) noexcept override {
        return SetThreadpoolThreadMinimum(pool_.Get(), threads) != FALSE;
    }
    void Rest() noexcept override { SetThreadpoolThreadMinimum(pool_.Get(), 0); }
    void Start() noexcept override { SubmitThreadpoolWork(work_.load(std::memory_order_acquire)); }

  private:
    clsOwned<scWorkPolicy> MakeWork() noexcept {
        TP_CALLBACK_ENVIRON environment;
        InitializeThreadpoolEnvironment(&environment);
        SetThreadpoolCallbackPool(&environment, pool_.Get());
        SetThreadpoolCallbackLibrary(&environment, library_.Get());
        clsOwned<scWorkPolicy> work(CreateThreadpoolWork(Called, this, &environment));
        DestroyThreadpoolEnvironment(&environment);
        return work;
    }

    static void CALLBACK Called(PTP_CALLBACK_INSTANCE, void* context, PTP_WORK) noexcept {
        auto* const threads = static_cast<clsSystemPoolThreads*>(context);
        clsRunnerPriority priority(threads->background_);
        if (threads->runner_.Run(priority)) // else the pool may be gone by now
            delete &threads->runner_;       // and the threads with it
    }

    IclsPoolRunner& runner_;
    bool background_;
    clsLibrary library_; // goes last
    clsOwned<scPoolPolicy> pool_;
    std::atomic<PTP_WORK> work_{nullptr};
};

constexpr DWORD lookEvery = 10; // milliseconds, without an event

// Answers messages that were sent to the thread's windows: looking for one calls them.
void AnswerSentMessages() noexcept {
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

// Until the event is set, a message was answered or the time is over. A process without windows is not given
// their library for the question.
void WaitOnce(HANDLE event, DWORD milliseconds) noexcept {
    const DWORD events = event ? 1 : 0;
    if (!PlatformWindowsAreUp() || !IsGUIThread(FALSE)) {
        if (event)
            WaitForSingleObject(event, milliseconds);
        else
            Sleep(milliseconds);
    } else if (MsgWaitForMultipleObjectsEx(events, &event, milliseconds, QS_SENDMESSAGE, 0) ==
               WAIT_OBJECT_0 + events) {
        AnswerSentMessages();
    }
}

} // namespace

std::unique_ptr<IclsPoolThreads> PlatformMakePoolThreads(IclsPoolRunner& runner, unsigned most,
                                                         bool background) noexcept {
    auto threads =
        std::unique_ptr<clsSystemPoolThreads>(new (std::nothrow) clsSystemPoolThreads(runner, background));
    if (threads && !threads->Open(most))
        threads.reset();
    return threads;
}

clsPoolSignal::clsPoolSignal() noexcept : event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

clsPoolSignal::~clsPoolSignal() {
    clsHandle closed(event_);
}

void clsPoolSignal::Set() noexcept {
    set_.store(true, std::memory_order_release);
    if (event_)
        SetEvent(event_);
}

void clsPoolSignal::Wait(std::uint32_t milliseconds) noexcept {
    const ULONGLONG start = GetTickCount64();
    while (!IsSet()) {
        const ULONGLONG passed = GetTickCount64() - start;
        if (milliseconds != forever && passed >= milliseconds)
            return;
        const DWORD left = milliseconds == forever ? INFINITE : static_cast<DWORD>(milliseconds - passed);
        WaitOnce(event_, event_ || left < lookEvery ? left : lookEvery);
    }
}

std::uint32_t PlatformThreadId() noexcept {
    return GetCurrentThreadId();
}

unsigned PlatformProcessorCount() noexcept {
    DWORD_PTR process = 0, system = 0;
    GetProcessAffinityMask(GetCurrentProcess(), &process, &system);
    return process == 0 ? 1 : static_cast<unsigned>(std::popcount(process));
}

} // namespace tvut
