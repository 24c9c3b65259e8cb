// Sessions at a command line, each in a folder of its own with copies of tests/data/tool.
//
// In a session of tests/data/sessions, "$ prof ..." is typed, lines that begin with "< " are its standard
// input, "! " its standard error, "? " an exit code other than 0, and all others its standard output.
// "$ write FILE" makes a file of its "< " lines, "$ same A B" requires two files to be alike ("as-it-was/" holds
// what the folder began with), "$ gone FILE" that there is no such file. TVUT22_REWRITE_GOLDENS=1 in the
// environment writes what is printed into the sessions.
#include "fixture.h"

#include <cstdlib>
#include <sstream>

namespace prof_test {

namespace {

struct Step {
    std::string command;
    std::string input;
    std::string expected;
    std::string where;
};

std::vector<Step> stepsOf(const std::filesystem::path& path) {
    std::ifstream file{path, std::ios::binary};
    std::vector<Step> steps;
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

std::string marked(const std::string& text, const char* mark) {
    std::istringstream lines{text};
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += mark + line + "\n";
    return result;
}

class Session : public ProfTool {
  protected:
    // What a step prints, as sessions show it.
    std::string shown(const Step& step) const {
        std::istringstream words{step.command};
        std::string program, first, second;
        words >> program >> first >> second;
        if (program == "write")
            return write(first, step.input), "";
        if (program == "gone")
            return std::filesystem::exists(pathOf(first)) ? first + " is there\n" : "";
        if (program == "same")
            return bytesOf(first) == bytesOf(second) ? "" : first + " and " + second + " differ\n";
        const auto folder = std::filesystem::absolute(PROF_EXECUTABLE).parent_path();
        const Outcome outcome = runHere(folder / (program + ".exe"), step.command, step.input);
        return marked(outcome.out, "") + marked(outcome.err, "! ") +
               (outcome.code ? "? " + std::to_string(outcome.code) + "\n" : "");
    }

  private:
    std::string bytesOf(const std::string& name) const {
        constexpr std::string_view original = "as-it-was/";
        if (!name.starts_with(original))
            return read(name);
        return testing_prof::readFile(std::filesystem::path{PROF_TEST_DATA} / name.substr(original.size()));
    }
};

void rewrite(const std::filesystem::path& path, const std::vector<std::string>& outputs) {
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
        for (const Step& step : stepsOf(entry.path())) {
            outputs.push_back(shown(step));
            EXPECT_EQ(outputs.back(), step.expected) << step.where << ": " << step.command;
        }
        EXPECT_FALSE(outputs.empty()) << entry.path();
        if (std::getenv("TVUT22_REWRITE_GOLDENS"))
            rewrite(entry.path(), outputs);
        ++sessions;
    }
    EXPECT_GE(sessions, 5);
}

} // namespace prof_test
