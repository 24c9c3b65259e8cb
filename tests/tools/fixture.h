// A folder with fresh copies of the test data, in which prof runs.
#pragma once

#include "process.h"

#include "support/beside_test.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

#include <string>

namespace prof_test {

class ProfTool : public ::testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::remove_all(folder_);
        std::filesystem::copy(tvut::TestData() + "/" TVUT22_TOOL "/files", folder_,
                              std::filesystem::copy_options::recursive);
    }
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    // What follows "prof" on a command line, in UTF-8.
    scOutcome Prof(const std::string& arguments, std::string_view input = {}) const {
        return RunHere(testing_prof::BesideTest("prof.exe"), "prof " + arguments, input);
    }
    scOutcome RunHere(const std::filesystem::path& program, const std::string& commandLine,
                      std::string_view input) const {
        return RunProgram(program, commandLine, folder_, input);
    }

    std::unique_ptr<clsProcess> Start(const std::string& arguments) const {
        return std::make_unique<clsProcess>(testing_prof::BesideTest("prof.exe"), "prof " + arguments,
                                            folder_);
    }

    std::string Read(const std::string& name) const { return testing_prof::ReadBytes(PathOf(name)); }
    void Write(const std::string& name, std::string_view bytes) const {
        testing_prof::WriteBytes(PathOf(name), bytes);
    }
    std::filesystem::path PathOf(const std::string& name) const {
        return folder_ / std::filesystem::u8path(name);
    }

    // Runs it and expects success; returns what it printed.
    std::string MustPrint(const std::string& arguments, std::string_view input = {}) const {
        const scOutcome outcome = Prof(arguments, input);
        EXPECT_EQ(outcome.code, 0u) << arguments << "\n" << outcome.err;
        EXPECT_EQ(outcome.err, "") << arguments;
        return outcome.out;
    }

    // Runs it and expects a failure that is explained and prints nothing else.
    void MustFail(const std::string& arguments, DWORD code, const std::string& reason,
                  std::string_view input = {}) const {
        const scOutcome outcome = Prof(arguments, input);
        EXPECT_EQ(outcome.code, code) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_TRUE(outcome.err.starts_with("prof: ")) << arguments << "\n" << outcome.err;
        EXPECT_NE(outcome.err.find(reason), std::string::npos) << arguments << "\n" << outcome.err;
    }

  private:
    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("prof-tool-" + std::to_string(GetCurrentProcessId()));
};

} // namespace prof_test
