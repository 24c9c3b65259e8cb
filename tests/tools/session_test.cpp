// Sessions at a command line, each in a folder of its own with copies of tests/data/tool.
//
// In a session of tests/data/sessions, "$ prof ..." is typed, lines that begin with "< " are its standard
// input, "! " its standard error, "? " an exit code other than 0, and all others its standard output.
// "$ write FILE" makes a file of its "< " lines, "$ same A B" requires two files to be alike ("as-it-was/"
// holds what the folder began with), "$ gone FILE" that there is no such file. TVUT22_REWRITE_GOLDENS=1 in
// the environment writes what is printed into the sessions.
#include "fixture.h"

#include <cstdlib>
#include <sstream>

namespace prof_test {

namespace {

struct scStep {
    std::string command;
    std::string input;
    std::string expected;
    std::string where;
};

std::vector<scStep> StepsOf(const std::filesystem::path& path) {
    std::ifstream file{path, std::ios::binary};
    std::vector<scStep> steps;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.starts_with("$ "))
            steps.push_back(
                {line.substr(2), {}, {}, path.filename().string() + ":" + std::to_string(number)});
        else if (steps.empty() || line.starts_with("# "))
            continue;
        else if (line.starts_with("< "))
            steps.back().input += line.substr(2) + "\n";
        else
            steps.back().expected += line + "\n";
    }
    return steps;
}

std::string Marked(const std::string& text, const char* mark) {
    std::istringstream lines{text};
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += mark + line + "\n";
    return result;
}

class Session : public ProfTool {
  protected:
    // What a step prints, as sessions show it.
    std::string Shown(const scStep& step) const {
        std::istringstream words{step.command};
        std::string program, first, second;
        words >> program >> first >> second;
        if (program == "write")
            return Write(first, step.input), "";
        if (program == "gone")
            return std::filesystem::exists(PathOf(first)) ? first + " is there\n" : "";
        if (program == "same")
            return BytesOf(first) == BytesOf(second) ? "" : first + " and " + second + " differ\n";
        const auto folder = std::filesystem::absolute(PROF_EXECUTABLE).parent_path();
        const scOutcome outcome = RunHere(folder / (program + ".exe"), step.command, step.input);
        return Marked(outcome.out, "") + Marked(outcome.err, "! ") +
               (outcome.code ? "? " + std::to_string(outcome.code) + "\n" : "");
    }

  private:
    std::string BytesOf(const std::string& name) const {
        constexpr std::string_view original = "as-it-was/";
        if (!name.starts_with(original))
            return Read(name);
        return testing_prof::ReadBytes(std::filesystem::path{PROF_TEST_DATA} / name.substr(original.size()));
    }
};

void Rewrite(const std::filesystem::path& path, const std::vector<std::string>& outputs) {
    std::ifstream before{path, std::ios::binary};
    std::ostringstream after;
    auto output = outputs.begin();
    bool pending = false;
    const auto flush = [&] {
        if (std::exchange(pending, false))
            after << *output++;
    };
    for (std::string line; std::getline(before, line);) {
        if (line.starts_with("$ ") || line.starts_with("# "))
            flush();
        const bool kept = line.starts_with("$ ") || line.starts_with("# ") || line.starts_with("< ");
        pending = pending || line.starts_with("$ ");
        after << (kept ? line + "\n" : "");
    }
    flush();
    before.close();
    std::ofstream{path, std::ios::binary} << after.str();
}

} // namespace

TEST_F(Session, PrintsWhatItDidBefore) {
    int sessions = 0;
    for (const auto& entry : std::filesystem::directory_iterator{TVUT22_TEST_DATA "/sessions"}) {
        SetUp();
        std::vector<std::string> outputs;
        for (const scStep& step : StepsOf(entry.path())) {
            outputs.push_back(Shown(step));
            EXPECT_EQ(outputs.back(), step.expected) << step.where << ": " << step.command;
        }
        EXPECT_FALSE(outputs.empty()) << entry.path();
        if (std::getenv("TVUT22_REWRITE_GOLDENS"))
            Rewrite(entry.path(), outputs);
        ++sessions;
    }
    EXPECT_GE(sessions, 5);
}

} // namespace prof_test
