// The line and message of a load error, caught on their way to a debugger.
#include "load_report.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace prof_test {

TEST(LoadReport, KeepsTheLastLoadErrorWhileItListens) {
    const prof_tool::LoadReport report;
    EXPECT_EQ(report.reason(), "");
    OutputDebugStringW(L"something else in line 7\r\n");
    EXPECT_EQ(report.reason(), "");
    OutputDebugStringW(L"PROF load error line 12: 'it's not closed'\r\n");
    OutputDebugStringA("C:\\a: error 'b'.prf: error 'it's not closed' in line 12\n");
    EXPECT_EQ(report.reason(), "line 12: it's not closed");
    OutputDebugStringA("PROF load error line 0: 'no line yet'");
    EXPECT_EQ(report.reason(), "no line yet");
    OutputDebugStringA(("PROF load error line 3: '" + std::string(5000, 'x') + "'").c_str());
    OutputDebugStringA("PROF load error line 4");
    EXPECT_EQ(report.reason(), "");
}

TEST(LoadReport, BeginsAnewAndHearsNothingAfterwards) {
    {
        const prof_tool::LoadReport listening;
        OutputDebugStringA("PROF load error line 1: 'old'\n");
    }
    OutputDebugStringA("PROF load error line 2: 'unheard'\n");
    EXPECT_EQ(prof_tool::LoadReport{}.reason(), "");
}

} // namespace prof_test
