// A call stands on its hook in the list, and its procedure may close any of them, so a hook that is closed
// stays until no call is under way. The system's hook comes with the first one and goes with the last.
#include "window/hooks_chain.h"

#include "platform/exception.h"

namespace tvut {

bool scHook::Break(bool counts) noexcept {
    if (counts)
        seen.fetch_add(1, std::memory_order_relaxed);
    return onBreak && onBreak(Handle(), user);
}

clsHookChain::~clsHookChain() {
    if (system_)
        UnhookWindowsHookEx(system_);
}

void clsHookChain::Add(const std::shared_ptr<scHook>& hook) {
    hooks_.push_front(hook);
    if (system_)
        return;
    system_ = SetWindowsHookExW(kind_, called_, nullptr, GetCurrentThreadId());
    if (system_)
        return;
    const DWORD error = GetLastError();
    hooks_.pop_front();
    throw clsException("the system takes no hook", error);
}

void clsHookChain::Sweep() noexcept {
    if (running_ != 0)
        return;
    hooks_.remove_if([](const auto& hook) { return hook->isClosed.load(); });
    if (!hooks_.empty() || !system_)
        return;
    const clsLastErrorKept lastError;
    UnhookWindowsHookEx(std::exchange(system_, nullptr));
}

} // namespace tvut
