// tvut from the outside: each file of tests/data/tvut/sessions is a session in a folder with fresh copies of
// tests/data/tvut/files. What is typed begins with "$ ", what is printed follows: standard output, then
// standard error, then the exit code in brackets unless it is 0. A * stands for any characters. "< FILE" and
// "> FILE" at the end of a line are standard input and output. Beside tvut there are:
//   cat FILE            prints a file
//   ls                  prints the names of all files and folders
//   fill FILE BYTES     makes a file of so many "x"
//   damage FILE BYTE    changes the byte at that place
#include "process.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iomanip>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <vector>

namespace tvut_test {

namespace fs = std::filesystem;
using prof_test::scOutcome;

namespace {

std::string ReadFile(const fs::path& path) {
    std::ifstream file{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

void WriteFile(const fs::path& path, std::string_view bytes) {
    std::ofstream{path, std::ios::binary}.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool IsMatch(std::string_view text, std::string_view pattern) {
    std::size_t at = 0, wanted = 0, star = pattern.npos, starTook = 0;
    while (at < text.size()) {
        if (wanted < pattern.size() && pattern[wanted] == '*') {
            star = wanted++;
            starTook = at;
        } else if (wanted < pattern.size() && text[at] == pattern[wanted]) {
            ++at;
            ++wanted;
        } else if (star != pattern.npos) {
            wanted = star + 1;
            at = ++starTook;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', wanted) == pattern.npos;
}

struct scStep {
    std::string typed;
    std::string expected;
};

std::vector<scStep> StepsOf(const fs::path& session) {
    std::istringstream lines(ReadFile(session));
    std::vector<scStep> steps;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("$ "))
            steps.push_back({line.substr(2), {}});
        else if (!steps.empty())
            steps.back().expected += line + "\n";
    }
    return steps;
}

// Takes "MARK FILE" from the end of a command.
std::string TakeRedirection(std::string& typed, const std::string& mark) {
    const std::size_t at = typed.rfind(mark);
    if (at == std::string::npos)
        return {};
    const std::string file = typed.substr(at + mark.size());
    typed.resize(at);
    return file;
}

class clsSession : public testing::TestWithParam<fs::path> {
  protected:
    void SetUp() override {
        fs::remove_all(folder_);
        fs::copy(fs::path(TVUT_TEST_DATA) / "files", folder_, fs::copy_options::recursive);
    }
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    std::string Answer(std::string typed) {
        const std::string output = TakeRedirection(typed, " > "), input = TakeRedirection(typed, " < ");
        std::istringstream words(typed);
        std::string command, file;
        std::size_t number = 0;
        words >> command >> std::quoted(file) >> number;
        if (command != "tvut")
            return others_.at(command)(folder_ / fs::u8path(file), number);
        scOutcome outcome = prof_test::RunProgram(fs::absolute(TVUT_EXECUTABLE), typed, folder_,
                                                  input.empty() ? std::string() : ReadFile(folder_ / input));
        if (!output.empty())
            WriteFile(folder_ / output, std::exchange(outcome.out, {}));
        return outcome.out + outcome.err +
               (outcome.code == 0 ? "" : "[" + std::to_string(outcome.code) + "]\n");
    }

  private:
    std::string Names() const {
        std::set<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(folder_))
            names.insert(reinterpret_cast<const char*>(
                entry.path().lexically_relative(folder_).generic_u8string().c_str()));
        std::string text;
        for (const std::string& name : names)
            text += name + "\n";
        return text;
    }

    static void Damage(const fs::path& path, std::size_t at) {
        std::string bytes = ReadFile(path);
        bytes.at(at) ^= 0x55;
        WriteFile(path, bytes);
    }

    fs::path folder_ = fs::temp_directory_path() / ("tvut-tool-" + std::to_string(GetCurrentProcessId()));
    const std::map<std::string, std::function<std::string(const fs::path&, std::size_t)>> others_{
        {"cat", [](auto& path, auto) { return ReadFile(path); }},
        {"ls", [this](auto&, auto) { return Names(); }},
        {"fill", [](auto& path, auto bytes) { return WriteFile(path, std::string(bytes, 'x')), ""; }},
        {"damage", [](auto& path, auto at) { return Damage(path, at), ""; }},
    };
};

TEST_P(clsSession, GoesAsItIsWritten) {
    const std::vector<scStep> steps = StepsOf(GetParam());
    ASSERT_FALSE(steps.empty());
    for (const scStep& step : steps) {
        const std::string answer = Answer(step.typed);
        EXPECT_TRUE(IsMatch(answer, step.expected)) << "$ " << step.typed << "\n" << answer;
    }
}

std::vector<fs::path> Sessions() {
    std::vector<fs::path> sessions;
    for (const auto& entry : fs::directory_iterator(fs::path(TVUT_TEST_DATA) / "sessions"))
        sessions.push_back(entry.path());
    return sessions;
}

INSTANTIATE_TEST_SUITE_P(Tvut, clsSession, testing::ValuesIn(Sessions()),
                         [](const auto& session) { return session.param.stem().string(); });

} // namespace
} // namespace tvut_test
