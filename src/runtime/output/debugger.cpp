// The system hands a text to a debugger by an exception, which costs microseconds even where nobody takes
// it. So a monitor's event is looked for first, once a second. All that is remembered is atomic, because
// any thread may ask, and two that ask at once find the same.
#include "runtime/output/debugger.h"

#include "platform/mapping.h"
#include "platform/wide.h"

#include <atomic>
#include <cwchar>

namespace tvut {

namespace {

constexpr DWORD monitorCheckInterval = 1000; // milliseconds

// Not local to functions: the runtime allocates to guard the making of those, and lines are written when
// memory has run out, too.
std::atomic<DWORD> monitorChecked{0}; // when, in milliseconds; 0: never
std::atomic<bool> monitorFound{false};
std::atomic<int> developer{-1}; // -1: not looked up yet

// Asking for the monitor's event is a call into the system: once in a while is enough.
bool MonitorRuns() noexcept {
    const DWORD now = GetTickCount() | 1;
    const DWORD checked = monitorChecked.load(std::memory_order_relaxed);
    if (checked == 0 || now - checked >= monitorCheckInterval) {
        monitorChecked.store(now, std::memory_order_relaxed);
        const clsHandle ready(OpenEventW(SYNCHRONIZE, FALSE, L"DBWIN_BUFFER_READY"));
        monitorFound.store(static_cast<bool>(ready), std::memory_order_relaxed);
    }
    return monitorFound.load(std::memory_order_relaxed);
}

bool ReadDeveloperSwitch() noexcept {
    wchar_t user[4];
    return GetEnvironmentVariableW(L"user", user, 4) == 3 && _wcsicmp(user, L"qmz") == 0;
}

} // namespace

bool UtilpDebuggerListens() noexcept {
    return IsDebuggerPresent() || MonitorRuns();
}

void UtilpWriteToDebugger(std::u16string_view text) noexcept {
    std::array<wchar_t, clsDiagnosticLine::longest + 1> terminated;
    text = text.substr(0, clsDiagnosticLine::longest);
    std::wmemcpy(terminated.data(), ToWide(text.data()), text.size());
    terminated[text.size()] = L'\0';
    OutputDebugStringW(terminated.data());
}

bool UtilpIsDeveloper() noexcept {
    if (developer < 0)
        developer = ReadDeveloperSwitch();
    return developer > 0;
}

} // namespace tvut
