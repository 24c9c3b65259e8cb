// One hook of the system a kind and thread stands before all of the library's. It and its chain stay while a
// call is under way, because a procedure may close any hook; the last one to leave sweeps, and the record
// goes with the last hook. Ctrl+Break is seen twice, as a message and by looking at the keyboard:
// hooks_presses.h tells which are one press. A press that a procedure has claimed becomes WM_NULL, and so do
// its repeats.
#include "window/hooks_thread.h"

#include "platform/thread_slot.h"

#include <new>

namespace tvut {

namespace {

constinit clsThreadSlot slot;

struct scKey {
    bool isDown, wentDown;
};

scKey LookAtKeyboard() noexcept {
    const auto state = static_cast<unsigned>(GetAsyncKeyState(VK_CANCEL));
    return {(state & 0x8000) != 0, (state & 1) != 0};
}

// Whether the press that a look has shown was meant for this process. A console in front tells its own. Of a
// key that is up again the system does not say when it was pressed: where this thread has the keyboard, its
// message is in the queue, or it was before this window came to the front.
bool WasMeantForUs(const scKey& key) noexcept {
    const HWND front = GetForegroundWindow();
    DWORD process = 0;
    const DWORD thread = front ? GetWindowThreadProcessId(front, &process) : 0;
    if (process != GetCurrentProcessId() || front == GetConsoleWindow())
        return false;
    return key.isDown || thread != GetCurrentThreadId() || (HIWORD(GetQueueStatus(QS_KEY)) & QS_KEY) != 0;
}

constexpr LPARAM wasDownBefore = 1 << 30;

} // namespace

// ---- Calls of the system ---------------------------------------------------------------------------

// A call of the system, while which no hook leaves its chain.
class clsHookThread::clsCall {
  public:
    clsCall(clsHookThread& thread, clsHookChain& chain) noexcept : thread_(thread), chain_(chain) {
        chain_.Enter();
    }
    ~clsCall() {
        chain_.Leave();
        thread_.Settle();
    }
    clsCall(const clsCall&) = delete;
    clsCall& operator=(const clsCall&) = delete;

  private:
    clsHookThread& thread_;
    clsHookChain& chain_;
};

LRESULT CALLBACK clsHookThread::CbtCalled(int code, WPARAM w, LPARAM l) noexcept {
    clsHookThread* const thread = code < 0 ? nullptr : Find();
    if (!thread)
        return CallNextHookEx(nullptr, code, w, l);
    const clsCall call(*thread, thread->cbt_);
    const LRESULT answer = thread->cbt_.FirstAnswer(
        [=](const scHook& hook) { return hook.cbt(hook.Handle(), code, w, l, hook.user); });
    return answer != 0 ? answer : CallNextHookEx(nullptr, code, w, l);
}

LRESULT CALLBACK clsHookThread::MessageTaken(int code, WPARAM w, LPARAM l) noexcept {
    clsHookThread* const thread = code == HC_ACTION && (w & PM_REMOVE) != 0 ? Find() : nullptr;
    if (!thread)
        return CallNextHookEx(nullptr, code, w, l);
    const clsCall call(*thread, thread->messages_);
    thread->Take(*reinterpret_cast<MSG*>(l));
    return CallNextHookEx(nullptr, code, w, l);
}

// ---- Presses ---------------------------------------------------------------------------------------

bool clsHookThread::Press(const MSG& message) noexcept {
    const bool counts = presses_.Arrive(message.time, LookAtKeyboard().isDown);
    return messages_.FirstAnswer([=](scHook& hook) { return hook.Break(counts) ? 1 : 0; }) != 0;
}

void clsHookThread::Take(MSG& message) noexcept {
    if (message.wParam != VK_CANCEL)
        return;
    if (message.message == WM_KEYUP || message.message == WM_SYSKEYUP) {
        presses_.Release();
    } else if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) {
        if ((message.lParam & wasDownBefore) == 0)
            isSwallowed_ = Press(message);
        if (isSwallowed_)
            message.message = WM_NULL;
    }
}

void clsHookThread::Look() noexcept {
    const scKey key = LookAtKeyboard();
    if (!presses_.Look(key.isDown, key.wentDown) || !WasMeantForUs(key))
        return;
    presses_.CountLook(GetTickCount());
    for (const auto& hook : messages_.Hooks())
        hook->seen.fetch_add(1, std::memory_order_relaxed);
}

// ---- The thread ------------------------------------------------------------------------------------

clsHookThread::clsHookThread() noexcept : cbt_(WH_CBT, CbtCalled), messages_(WH_GETMESSAGE, MessageTaken) {}

clsHookThread* clsHookThread::Find() noexcept {
    return static_cast<clsHookThread*>(slot.Get());
}

clsHookThread& clsHookThread::Need() {
    if (clsHookThread* const found = Find())
        return *found;
    auto made = std::make_unique<clsHookThread>();
    if (!slot.Set(made.get()))
        throw std::bad_alloc();
    return *made.release();
}

void clsHookThread::Settle() noexcept {
    cbt_.Sweep();
    messages_.Sweep();
    if (!cbt_.IsIdle() || !messages_.IsIdle())
        return;
    Forget();
    delete this;
}

void clsHookThread::Forget() noexcept {
    slot.Set(nullptr);
}

void clsHookThread::FreeSlot() noexcept {
    slot.Free();
}

} // namespace tvut
