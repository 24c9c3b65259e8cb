// logpan.exe, the program with the window. It knows the console mode, too: a pipe works, but a shell does not
// wait for it as it does for logpan.com.
#include "console.h"
#include "program.h"
#include "run_window.h"
#include "text_io.h"

#include <windows.h>

namespace {

using tool::ExitCode;
using tool::scFailure;

HANDLE StandardError() {
    return GetStdHandle(STD_ERROR_HANDLE);
}

// A program with a window starts without a console; what prints goes to that of its starter, unless it was
// given pipes or files.
void BorrowConsole() {
    if (GetStdHandle(STD_OUTPUT_HANDLE) != nullptr || !AttachConsole(ATTACH_PARENT_PROCESS))
        return;
    const HANDLE console =
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    SetStdHandle(STD_OUTPUT_HANDLE, console);
    SetStdHandle(STD_ERROR_HANDLE, console);
    // cppcheck-suppress resourceLeak ; the process's standard handles now, as long as it runs
}

void Report(const char* name, const scFailure& failure) {
    if (StandardError() != nullptr && StandardError() != INVALID_HANDLE_VALUE) {
        tool::ReportOnStandardError(name, failure);
        return;
    }
    const std::string subject = failure.subject.empty() ? failure.subject : failure.subject + ": ";
    MessageBoxW(nullptr, tool::ToWide(subject + failure.reason).c_str(), L"logpan", MB_ICONERROR | MB_OK);
}

ExitCode Run(std::vector<std::string> words) {
    if (!words.empty())
        BorrowConsole();
    const auto arguments = tool::logpan::ParseCommandLine(std::move(words));
    if (!arguments)
        return ExitCode::ok;
    return arguments->console ? RunConsole(*arguments) : RunWindow(*arguments);
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    return tool::RunProgram("logpan", Run, Report);
}
