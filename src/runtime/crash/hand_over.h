// A crash, handed over to a thread that was made ready for it.
//
// The thread that crashes may have no stack left and may hold any lock, so it does nothing but set an event
// and wait; the prepared thread writes. Where the system has already ended all other threads, because the
// process is being shut down, the crashing thread writes itself.
#pragma once

#include "runtime/crash/crash_files.h"

#include <atomic>

namespace tvut {

class clsHandOver {
  public:
    constexpr clsHandOver() noexcept = default;
    clsHandOver(const clsHandOver&) = delete;
    clsHandOver& operator=(const clsHandOver&) = delete;

    // In ordinary times. Starts the thread; what is given stays as long as the object. False: no thread, and
    // nothing to be ended.
    bool Open(const scPreparation& preparation) noexcept;

    // A handle of its own to the event that says that the thread has begun; null when there is none to be
    // had.
    void* Ready() const noexcept;

    // Has the thread leave, when it has written what is being written. It keeps the library loaded until
    // then, and last calls "release", as nobody needs the object any more. For ordinary times, and without
    // a lock: it asks the loader.
    void Dismiss(void (*release)(clsHandOver*)) noexcept;

    // Stops the thread where it waits, holding nothing: for callers within the loader, for which a thread
    // that ends waits.
    void Stop() noexcept;

    // On the thread that crashed. Returns when all is written, unless the process ends.
    void Take(CrashKind kind, EXCEPTION_POINTERS* exception) noexcept;

  private:
    enum class State : std::uint32_t { closed, idle, busy };

    static unsigned long __stdcall Thread(void* self);
    void Serve() noexcept;
    void WriteAll() noexcept;
    void CallAfter(const scCrashFiles& files) const noexcept;
    void ShowNotice(const scCrashFiles& files) const noexcept;
    void WaitForOther() noexcept;
    std::uint32_t ExitCode() const noexcept;
    void CloseHandles() noexcept;

    std::atomic<State> state_{State::closed};
    std::atomic<void (*)(clsHandOver*)> release_{nullptr}; // set: the thread's turn to leave
    void* library_ = nullptr;                              // ours, kept loaded by the thread that leaves
    const scPreparation* prepared_ = nullptr;
    void* thread_ = nullptr;
    std::uint32_t threadId_ = 0;
    void* ready_ = nullptr;    // events: the thread has begun,
    void* crashed_ = nullptr;  // there is something to do,
    void* written_ = nullptr;  // all is written and the product was called,
    void* finished_ = nullptr; // and the notice has been read
    scCrashEvent event_;
};

} // namespace tvut
