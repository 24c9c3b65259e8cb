// Collects what the process writes to the debugger output while the object lives.
#pragma once

#include <windows.h>

#include <string>

namespace testing_prof {

class DebugOutput {
  public:
    DebugOutput() : handler_(AddVectoredExceptionHandler(1, collect)) { text().clear(); }
    ~DebugOutput() { RemoveVectoredExceptionHandler(handler_); }
    DebugOutput(const DebugOutput&) = delete;
    DebugOutput& operator=(const DebugOutput&) = delete;

    static std::wstring& text() {
        static std::wstring collected;
        return collected;
    }

  private:
    static LONG CALLBACK collect(EXCEPTION_POINTERS* pointers) {
        constexpr DWORD kNarrow = 0x40010006, kWide = 0x4001000A;
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        if (record.ExceptionCode == kWide)
            text() += reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]);
        else if (record.ExceptionCode == kNarrow)
            for (auto* at = reinterpret_cast<const unsigned char*>(record.ExceptionInformation[1]); *at; ++at)
                text() += static_cast<wchar_t>(*at);
        else
            return EXCEPTION_CONTINUE_SEARCH;
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    void* handler_;
};

} // namespace testing_prof
