// Collects what the process writes to the debugger output while the object lives.
#pragma once

#include <windows.h>

#include <string>

namespace testing_prof {

class clsDebugOutput {
  public:
    clsDebugOutput() : handler_(AddVectoredExceptionHandler(1, Collect)) { Text().clear(); }
    ~clsDebugOutput() { RemoveVectoredExceptionHandler(handler_); }
    clsDebugOutput(const clsDebugOutput&) = delete;
    clsDebugOutput& operator=(const clsDebugOutput&) = delete;

    static std::wstring& Text() {
        static std::wstring collected;
        return collected;
    }

  private:
    static LONG CALLBACK Collect(EXCEPTION_POINTERS* pointers) {
        constexpr DWORD narrowOutput = 0x40010006, wideOutput = 0x4001000A;
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        if (record.ExceptionCode == wideOutput)
            Text() += reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]);
        else if (record.ExceptionCode == narrowOutput)
            for (auto* at = reinterpret_cast<const unsigned char*>(record.ExceptionInformation[1]); *at; ++at)
                Text() += static_cast<wchar_t>(*at);
        else
            return EXCEPTION_CONTINUE_SEARCH;
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    void* handler_;
};

} // namespace testing_prof
