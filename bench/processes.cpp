#include "processes.h"

#include "harness.h"

#include <windows.h>

namespace bench {

std::wstring PathOfModule(const wchar_t* name) {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(GetModuleHandleW(name), path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::wstring Quoted(const std::wstring& path) {
    return L"\"" + path + (path.ends_with(L'\\') ? L"\\\"" : L"\"");
}

std::size_t ExitCodeOf(std::wstring commandLine) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    Require(CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                           &startup, &process) != FALSE,
            "a probe could not be started");
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    Require(code < 0x80000000u, "a probe failed");
    return code;
}

} // namespace bench
