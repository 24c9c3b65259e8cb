// Puts store, window and session together.
#include "run_window.h"

#include "main_window.h"
#include "session.h"

namespace tool::logpan {

namespace {

// Whoever starts a second viewer wants to see the first one.
void ShowOther() {
    const HWND other = FindWindowW(LOGPAN_WINDOW_CLASS, nullptr);
    if (other == nullptr || !IsWindowVisible(other))
        return;
    ShowWindow(other, IsIconic(other) ? SW_RESTORE : SW_SHOW);
    SetForegroundWindow(other);
}

void RunAlone(const scArguments& arguments) {
    clsStore store{arguments.capacity, arguments.Bytes()};
    clsMainWindow window{arguments, store};
    const clsSession session{store, arguments.datagram, window.Handle()};
    window.Show(session.Port());
    window.Run();
}

} // namespace

ExitCode RunWindow(const scArguments& arguments) {
    FilterTextOf(arguments); // a bad pattern ends the program before it takes another viewer's place
    try {
        const clsOnlyViewer only;
        RunAlone(arguments);
    } catch (const scFailure&) {
        ShowOther();
        throw;
    }
    return ExitCode::ok;
}

} // namespace tool::logpan
