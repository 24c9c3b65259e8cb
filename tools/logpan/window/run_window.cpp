// Puts store, window and session together.
#include "run_window.h"

#include "main_window.h"
#include "session.h"
#include "text_io.h"

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

void RunLive(const scArguments& arguments, clsSettingsFile& settings) {
    const clsOnlyViewer only;
    clsStore store{arguments.capacity, arguments.Bytes()};
    clsMainWindow window{arguments, settings, store};
    const clsSession session{store, arguments.datagram, window.Handle()};
    window.Show(session.Port());
    window.Run();
}

// Beside a viewer that listens there may be any number of these.
void RunFiles(const scArguments& arguments, clsSettingsFile& settings) {
    clsStore none{1, 1};
    clsMainWindow window{arguments, settings, none};
    std::vector<std::wstring> paths;
    for (const std::string& file : arguments.files)
        paths.push_back(ToWide(file));
    window.Open(std::move(paths));
    window.Show(0);
    window.Run();
}

} // namespace

ExitCode RunWindow(const scArguments& arguments) {
    FilterTextOf(arguments); // a bad pattern ends the program before it takes another viewer's place
    // Read before lines come and saved when none come any more: the library's own would be among them.
    clsSettingsFile settings{arguments.settings ? ToWide(*arguments.settings) : clsSettingsFile::UsualPath()};
    try {
        arguments.files.empty() ? RunLive(arguments, settings) : RunFiles(arguments, settings);
    } catch (const scFailure&) {
        ShowOther();
        throw;
    }
    settings.Save();
    return ExitCode::ok;
}

} // namespace tool::logpan
