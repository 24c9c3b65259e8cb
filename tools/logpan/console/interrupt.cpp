// The handler runs in a thread of the system's and finds its store in a variable of this file.
#include "interrupt.h"

#include <mutex>

namespace tool::logpan {

namespace {

constexpr DWORD longestFinish = 4000; // milliseconds; the system kills after five seconds

std::mutex guard;
clsStore* stoppable = nullptr;

// Never freed: a handler may still wait for it while the program ends.
HANDLE FinishedEvent() {
    static const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    return event;
}

BOOL WINAPI Handle(DWORD kind) {
    {
        const std::lock_guard lock{guard};
        if (stoppable == nullptr)
            return FALSE;
        stoppable->Stop();
    }
    if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT)
        WaitForSingleObject(FinishedEvent(), longestFinish);
    return TRUE;
}

} // namespace

clsInterrupt::clsInterrupt(clsStore& store) {
    ResetEvent(FinishedEvent());
    {
        const std::lock_guard lock{guard};
        stoppable = &store;
    }
    SetConsoleCtrlHandler(Handle, TRUE);
}

clsInterrupt::~clsInterrupt() {
    SetConsoleCtrlHandler(Handle, FALSE);
    const std::lock_guard lock{guard};
    stoppable = nullptr;
    SetEvent(FinishedEvent());
}

} // namespace tool::logpan
