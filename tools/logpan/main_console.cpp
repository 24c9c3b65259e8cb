// logpan.com, the program for consoles and pipes: a shell finds it before logpan.exe and waits for it.
//
// It needs no console of its own taken away and no window: for that it starts the program beside it.
#include "console.h"
#include "owned.h"
#include "program.h"
#include "system_reason.h"

#include <string>

namespace {

using tool::ExitCode;

std::wstring WindowProgram() {
    std::wstring path(32 * 1024, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    if (const std::size_t dot = path.find_last_of(L".\\"); dot < path.size() && path[dot] == L'.')
        path.resize(dot);
    return path + L".exe";
}

ExitCode StartWindow() {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    std::wstring words = GetCommandLineW();
    if (!CreateProcessW(WindowProgram().c_str(), words.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &start, &process))
        throw tool::scFailure{ExitCode::cannotOpen, "logpan.exe", tool::SystemReason(GetLastError())};
    const tool::clsHandle thread{process.hThread};
    const tool::clsHandle running{process.hProcess};
    AllowSetForegroundWindow(process.dwProcessId);
    return ExitCode::ok;
}

ExitCode Run(std::vector<std::string> words) {
    const auto arguments = tool::logpan::ParseCommandLine(std::move(words));
    if (!arguments)
        return ExitCode::ok;
    FilterTextOf(*arguments); // says what is wrong with a pattern where it can be read
    return arguments->console ? RunConsole(*arguments) : StartWindow();
}

} // namespace

int main() {
    return tool::RunProgram("logpan", Run);
}
