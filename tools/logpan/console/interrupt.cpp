// The handler runs in a thread of the system's and finds its store in a variable of this file.
#include "interrupt.h"

#include <mutex>

namespace tool::logpan {

namespace {

constexpr DWORD longestFinish = 4000; // milliseconds; the system kills after five seconds

std::mutex guard;
Store* stoppable = nullptr;

// Never freed: a handler may still wait for it while the program ends.
HANDLE finishedEvent() {
    static const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    return event;
}

BOOL WINAPI handle(DWORD kind) {
    {
        const std::lock_guard lock{guard};
        if (stoppable == nullptr)
            return FALSE;
        stoppable->stop();
    }
    if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT)
        WaitForSingleObject(finishedEvent(), longestFinish);
    return TRUE;
}

} // namespace

Interrupt::Interrupt(Store& store) {
    ResetEvent(finishedEvent());
    {
        const std::lock_guard lock{guard};
        stoppable = &store;
    }
    SetConsoleCtrlHandler(handle, TRUE);
}

Interrupt::~Interrupt() {
    SetConsoleCtrlHandler(handle, FALSE);
    const std::lock_guard lock{guard};
    stoppable = nullptr;
    SetEvent(finishedEvent());
}

} // namespace tool::logpan
