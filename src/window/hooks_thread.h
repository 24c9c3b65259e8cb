// What a thread has of hooks: there as long as it has one.
#pragma once

#include "window/hooks_chain.h"
#include "window/hooks_presses.h"

namespace tvut {

class clsHookThread {
  public:
    clsHookThread() noexcept;

    static clsHookThread* Find() noexcept; // the calling thread's; may be null
    static clsHookThread& Need();          // throws std::bad_alloc
    static void FreeSlot() noexcept;       // the library is unloaded

    clsHookChain& ChainOf(const scHook& hook) noexcept { return hook.isForBreak ? messages_ : cbt_; }

    // Lets go of what is closed. The object may be gone afterwards.
    void Settle() noexcept;

    // The calling thread ends: calls this with each hook that it has.
    template <class Close>
    static void End(Close&& close) {
        const std::unique_ptr<clsHookThread> ended(Find());
        if (!ended)
            return;
        for (const clsHookChain* chain : {&ended->cbt_, &ended->messages_})
            for (const auto& hook : chain->Hooks())
                close(*hook);
        Forget();
    }

    // Looks at the keyboard.
    void Look() noexcept;

  private:
    static void Forget() noexcept;
    static LRESULT CALLBACK CbtCalled(int code, WPARAM w, LPARAM l) noexcept;
    static LRESULT CALLBACK MessageTaken(int code, WPARAM w, LPARAM l) noexcept;
    class clsCall;

    void Take(MSG& message) noexcept;
    bool Press(const MSG& message) noexcept;

    clsHookChain cbt_;
    clsHookChain messages_;
    clsKeyPresses presses_;
    bool isSwallowed_ = false; // the press whose repeats may come
};

} // namespace tvut
