// The first one only sets a flag, which every loop over entries and pieces looks at. A second one is from
// somebody who has waited enough, such as for a program that never closes our standard input: it ends the
// process at once.
#include "interrupt.h"

#include "exit_code.h"

#include <windows.h>

#include <atomic>

namespace tool::tvut {

namespace {

constexpr DWORD longestFinish = 4000; // milliseconds; the system kills after five seconds

std::atomic<bool> isInterrupted{false};

// On a thread of the system's. Once a console is closed, the system ends the process when this returns.
BOOL WINAPI Handle(DWORD kind) {
    if (isInterrupted.exchange(true))
        ExitProcess(static_cast<UINT>(ExitCode::interrupted));
    if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT)
        Sleep(longestFinish);
    return TRUE;
}

} // namespace

void WatchForInterrupt() {
    SetConsoleCtrlHandler(Handle, TRUE);
}

bool IsInterrupted() {
    return isInterrupted;
}

void StopIfInterrupted() {
    if (isInterrupted)
        throw scFailure{ExitCode::interrupted, "", "interrupted"};
}

} // namespace tool::tvut
