// The test program as its own child process.
#pragma once

#include "files.h"

namespace testing_prof {

// A child that runs; the object's end waits for it.
class clsChild {
  public:
    explicit clsChild(std::wstring_view arguments) {
        wchar_t self[MAX_PATH];
        GetModuleFileNameW(nullptr, self, MAX_PATH);
        std::wstring line = L"child " + std::wstring(arguments);
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        if (CreateProcessW(self, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                           &process)) {
            process_.reset(process.hProcess);
            CloseHandle(process.hThread);
        }
    }
    ~clsChild() { ExitCode(); }
    clsChild(clsChild&&) = default;

    bool Runs() const { return WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT; }
    void Kill() const { TerminateProcess(process_.get(), 1); }
    // Of a child that ends unless something is wrong; 0xDEAD after a minute in which it has not.
    DWORD ExitCodeUnlessItHangs() const {
        if (WaitForSingleObject(process_.get(), 60000) == WAIT_TIMEOUT)
            TerminateProcess(process_.get(), 0xDEAD);
        return ExitCode();
    }
    DWORD ExitCode() const {
        DWORD code = ~0u;
        WaitForSingleObject(process_.get(), INFINITE);
        GetExitCodeProcess(process_.get(), &code);
        return code;
    }

  private:
    Handle process_;
};

} // namespace testing_prof
