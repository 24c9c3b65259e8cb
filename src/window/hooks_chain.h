// The hooks of one kind that a thread has, newest first, behind one hook of the system.
#pragma once

#include "platform/held_library.h"

#include <tvut22/window.h>

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>

namespace tvut {

// A hook: one of the two procedures. Threads other than the hook's look at it when an event of the console
// comes, and when they ask what was seen.
struct scHook {
    scHook(DWORD itsThread, bool forBreak, UtilCBTProc cbtProc, UtilBreakProc breakProc,
           UINT_PTR itsUser) noexcept
        : thread(itsThread), isForBreak(forBreak), cbt(cbtProc), onBreak(breakProc), user(itsUser) {}

    DWORD thread;
    bool isForBreak;
    UtilCBTProc cbt;
    UtilBreakProc onBreak; // may be null
    UINT_PTR user;
    std::uint32_t handle = 0;
    std::uint64_t number = 0;           // among those that wait for the console: the newer the greater
    std::atomic<bool> isClosed = false; // it is asked no more
    std::atomic<INT> seen = 0;
    clsHeldLibrary library{};

    UtilHook Handle() const noexcept {
        return reinterpret_cast<UtilHook>(static_cast<std::uintptr_t>(handle));
    }

    // Counts a press, and calls the procedure. True: it was meant for this hook.
    bool Break(bool counts) noexcept;
};

class clsHookChain {
  public:
    clsHookChain(int kind, HOOKPROC called) noexcept : kind_(kind), called_(called) {}
    ~clsHookChain();
    clsHookChain(const clsHookChain&) = delete;
    clsHookChain& operator=(const clsHookChain&) = delete;

    // Throws clsException, std::bad_alloc.
    void Add(const std::shared_ptr<scHook>& hook);

    // Between these two no hook leaves the chain.
    void Enter() noexcept { ++running_; }
    void Leave() noexcept {
        --running_;
        Sweep();
    }

    // Lets go of the hooks that are closed, and of the system's after the last one.
    void Sweep() noexcept;

    bool IsIdle() const noexcept { return running_ == 0 && hooks_.empty(); }

    // The first answer that is not 0, newest hook first; 0: all have been asked. Hooks that come meanwhile
    // are not.
    template <class Ask>
    LRESULT FirstAnswer(Ask&& ask) const {
        LRESULT answer = 0;
        for (auto at = hooks_.begin(); at != hooks_.end() && answer == 0; ++at)
            if (!(*at)->isClosed)
                answer = ask(**at);
        return answer;
    }

    const std::list<std::shared_ptr<scHook>>& Hooks() const noexcept { return hooks_; }

  private:
    int kind_; // WH_...
    HOOKPROC called_;
    HHOOK system_ = nullptr;
    unsigned running_ = 0; // calls under way, one within the other
    std::list<std::shared_ptr<scHook>> hooks_;
};

} // namespace tvut
