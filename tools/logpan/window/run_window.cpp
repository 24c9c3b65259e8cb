// Puts store, window and session together.
#include "run_window.h"

#include "main_window.h"
#include "session.h"

namespace tool::logpan {

namespace {

// Whoever starts a second viewer wants to see the first one.
void showOther() {
    const HWND other = FindWindowW(LOGPAN_WINDOW_CLASS, nullptr);
    if (other == nullptr || !IsWindowVisible(other))
        return;
    ShowWindow(other, IsIconic(other) ? SW_RESTORE : SW_SHOW);
    SetForegroundWindow(other);
}

void runAlone(const Arguments& arguments) {
    Store store{arguments.capacity, arguments.bytes()};
    MainWindow window{arguments, store};
    const Session session{store, arguments.datagram, window.handle()};
    window.show(session.port());
    window.run();
}

} // namespace

ExitCode runWindow(const Arguments& arguments) {
    filterOf(arguments); // a bad pattern ends the program before it takes another viewer's place
    try {
        const OnlyViewer only;
        runAlone(arguments);
    } catch (const Failure&) {
        showOther();
        throw;
    }
    return ExitCode::ok;
}

} // namespace tool::logpan
