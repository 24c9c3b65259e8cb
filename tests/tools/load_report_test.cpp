// The line and message of a load error, read from the library's log file.
#include "load_report.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <fstream>

namespace prof_test {

namespace {

const std::filesystem::path logName = std::filesystem::temp_directory_path() / L"load_report_test.log";

// Writes as the library does: a line's stamp, its text, CR LF.
void LogLine(const std::string& text) {
    std::ofstream(logName, std::ios::binary | std::ios::app)
        << "15:26:04.147 00000024/01 1  " << text << "\r\n";
}

} // namespace

TEST(LoadReport, TellsTheFirstErrorOfItsTime) {
    LogLine("PROF load error line 1: 'long ago'");
    SetEnvironmentVariableW(L"TVUT22_LOG", logName.c_str());
    const tool::prof::clsLoadReport report;
    EXPECT_EQ(report.Reason(), "");
    LogLine("something else in line 7");
    EXPECT_EQ(report.Reason(), "");
    LogLine("PROF load error line 12: 'it's not closed'");
    LogLine("C:\\a: error 'b'.prf: error 'it's not closed' in line 12");
    EXPECT_EQ(report.Reason(), "line 12: it's not closed");

    const tool::prof::clsLoadReport later;
    EXPECT_EQ(later.Reason(), "");
    LogLine("PROF load error line 0: 'no line yet'");
    EXPECT_EQ(later.Reason(), "no line yet");

    const tool::prof::clsLoadReport broken;
    LogLine("PROF load error line 4");
    LogLine("'");
    EXPECT_EQ(broken.Reason(), "");

    const tool::prof::clsLoadReport warned;
    EXPECT_EQ(warned.Warning(), "");
    LogLine("WRN: 'C:\\it's.xml': nothing of it was read");
    LogLine("WRN: later");
    EXPECT_EQ(warned.Warning(), "nothing of it was read");
    LogLine("'");
    EXPECT_EQ(tool::prof::clsLoadReport{}.Warning(), "");
    const tool::prof::clsLoadReport odd;
    LogLine("  WRN: '");
    EXPECT_EQ(odd.Warning(), "'");
    SetEnvironmentVariableW(L"TVUT22_LOG", nullptr);
}

} // namespace prof_test
