// Sessions at a command line: each file of tests/data/TOOL/sessions is one, in a folder with fresh copies of
// tests/data/TOOL/files.
//
// What is typed begins with "$ ". "< FILE" and "> FILE" at its end are standard input and output. Lines that
// begin with "< " are its standard input, "! " its standard error, "? " an exit code other than 0, "# " a
// comment, and all others its standard output. A * stands for any characters, {http} and {https} for the web
// server of tests/download. Beside the tool there are:
//   write FILE          makes a file of its "< " lines
//   same FILE FILE      tells of files that differ; "as-it-was/" holds what the folder began with
//   gone FILE           tells of a file that is there
//   cat FILE            prints a file
//   ls                  prints the names of all files and folders
//   fill FILE BYTES     makes a file of so many "x"
//   damage FILE BYTE    changes the byte at that place
#include "fixture.h"

#include <functional>
#include <iomanip>
#include <map>
#include <set>
#include <sstream>

namespace prof_test {

namespace {

namespace fs = std::filesystem;

struct scStep {
    std::string typed, input, expected, where;
};

std::vector<scStep> StepsOf(const fs::path& session) {
    std::istringstream lines{testing_prof::ReadBytes(session)};
    std::vector<scStep> steps;
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        if (line.starts_with("$ "))
            steps.push_back(
                {line.substr(2), {}, {}, session.filename().string() + ":" + std::to_string(number)});
        else if (steps.empty() || line.starts_with("# "))
            continue;
        else if (line.starts_with("< "))
            steps.back().input += line.substr(2) + "\n";
        else
            steps.back().expected += line + "\n";
    }
    return steps;
}

// Each piece between two * at the first place where it can be.
bool IsMatch(std::string_view text, std::string_view pattern) {
    std::size_t star = pattern.find('*');
    if (star == pattern.npos)
        return text == pattern;
    if (!text.starts_with(pattern.substr(0, star)))
        return false;
    text.remove_prefix(star);
    for (pattern.remove_prefix(star + 1); (star = pattern.find('*')) != pattern.npos;) {
        const std::size_t at = text.find(pattern.substr(0, star));
        if (at == text.npos)
            return false;
        text.remove_prefix(at + star);
        pattern.remove_prefix(star + 1);
    }
    return text.ends_with(pattern);
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

std::string WithServers(std::string typed) {
    for (const auto& [mark, variable] :
         {std::pair("{http}", "TVUT22_HTTP"), std::pair("{https}", "TVUT22_HTTPS")}) {
        const char* const root = std::getenv(variable);
        for (std::size_t at; root && (at = typed.find(mark)) != typed.npos;)
            typed.replace(at, std::string_view(mark).size(), root);
    }
    return typed;
}

std::string Marked(const std::string& text, const char* mark) {
    std::istringstream lines{text};
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += mark + line + "\n";
    return result;
}

class Session : public ProfTool, public testing::WithParamInterface<fs::path> {
  protected:
    // What a step prints, as sessions show it.
    std::string Answer(const scStep& step) const {
        std::string typed = WithServers(step.typed);
        const std::string output = TakeRedirection(typed, " > "), input = TakeRedirection(typed, " < ");
        std::istringstream words{typed};
        std::string program, file, last;
        words >> program >> std::quoted(file) >> std::quoted(last);
        if (const auto found = others_.find(program); found != others_.end())
            return found->second(step, file, last);
        scOutcome outcome = RunHere(testing_prof::BesideTest(program + ".exe"), typed,
                                    input.empty() ? step.input : Read(input));
        if (!output.empty())
            Write(output, std::exchange(outcome.out, {}));
        return Marked(outcome.out, "") + Marked(outcome.err, "! ") +
               (outcome.code ? "? " + std::to_string(outcome.code) + "\n" : "");
    }

  private:
    std::string BytesOf(const std::string& name) const {
        constexpr std::string_view original = "as-it-was/";
        return name.starts_with(original) ? testing_prof::ReadBytes(fs::path{tvut::TestData()} / TVUT22_TOOL /
                                                                    "files" / name.substr(original.size()))
                                          : Read(name);
    }
    std::string Names() const {
        std::set<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(PathOf("")))
            names.insert(reinterpret_cast<const char*>(
                entry.path().lexically_relative(PathOf("")).generic_u8string().c_str()));
        std::string text;
        for (const std::string& name : names)
            text += name + "\n";
        return text;
    }
    std::string Damage(const std::string& file, std::size_t at) const {
        std::string bytes = Read(file);
        bytes.at(at) ^= 0x55;
        return Write(file, bytes), "";
    }

    using Other = std::function<std::string(const scStep&, const std::string&, const std::string&)>;
    const std::map<std::string, Other> others_{
        {"write", [this](auto& step, auto& file, auto&) { return Write(file, step.input), ""; }},
        {"same",
         [this](auto& step, auto& one, auto& other) {
             return BytesOf(one) == BytesOf(other) ? "" : step.typed + ": they differ\n";
         }},
        {"gone",
         [this](auto&, auto& file, auto&) { return fs::exists(PathOf(file)) ? "it is there\n" : ""; }},
        {"cat", [this](auto&, auto& file, auto&) { return Marked(Read(file), ""); }},
        {"ls", [this](auto&, auto&, auto&) { return Names(); }},
        {"fill", [this](auto&, auto& file,
                        auto& bytes) { return Write(file, std::string(std::stoul(bytes), 'x')), ""; }},
        {"damage", [this](auto&, auto& file, auto& at) { return Damage(file, std::stoul(at)); }},
    };
};

TEST_P(Session, GoesAsItIsWritten) {
    const std::vector<scStep> steps = StepsOf(GetParam());
    ASSERT_FALSE(steps.empty());
    for (const scStep& step : steps) {
        const std::string answer = Answer(step);
        EXPECT_TRUE(IsMatch(answer, step.expected)) << step.where << ": " << step.typed << "\n" << answer;
    }
}

INSTANTIATE_TEST_SUITE_P(Tool, Session,
                         testing::ValuesIn(std::vector<fs::path>{
                             fs::directory_iterator(tvut::TestData() + "/" TVUT22_TOOL "/sessions"),
                             fs::directory_iterator()}),
                         [](const auto& session) { return session.param.stem().string(); });

} // namespace

} // namespace prof_test
