// The command that may have been meant: one that begins with the word, or the one that the fewest slips of
// the fingers turn into it.
#include "command_words.h"

#include "exit_code.h"
#include "text_io.h"

#include <windows.h>

#include <algorithm>

namespace tool {

namespace {

constexpr std::size_t mostSlips = 2;

char Lower(char unit) {
    return unit >= 'A' && unit <= 'Z' ? static_cast<char>(unit + ('a' - 'A')) : unit;
}

// Letters left out, added, changed or swapped with their neighbour; by rows of the well-known table of the
// distances between all beginnings of both texts.
std::size_t SlipsBetween(std::string_view typed, std::string_view meant) {
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(meant.size() + 1);
    for (std::size_t column = 0; column <= meant.size(); ++column)
        last[column] = column;
    for (std::size_t row = 1; row <= typed.size(); ++row) {
        std::vector<std::size_t> now(meant.size() + 1, row);
        for (std::size_t column = 1; column <= meant.size(); ++column) {
            const bool same = typed[row - 1] == meant[column - 1];
            now[column] = std::min({last[column] + 1, now[column - 1] + 1, last[column - 1] + !same});
            if (row > 1 && column > 1 && typed[row - 1] == meant[column - 2] &&
                typed[row - 2] == meant[column - 1])
                now[column] = std::min(now[column], beforeLast[column - 2] + 1);
        }
        beforeLast = std::move(last);
        last = std::move(now);
    }
    return last.back();
}

std::string_view Nearest(std::string_view typed, const std::vector<std::string_view>& commands) {
    const auto longer = std::find_if(commands.begin(), commands.end(),
                                     [&](std::string_view command) { return command.starts_with(typed); });
    if (longer != commands.end())
        return *longer;
    std::string_view best;
    std::size_t fewest = std::min(mostSlips, typed.size() / 2) + 1;
    for (const std::string_view command : commands)
        if (const std::size_t slips = SlipsBetween(typed, command); slips < fewest) {
            best = command;
            fewest = slips;
        }
    return best;
}

std::string SuggestionFor(const std::string& word, const scProgramWords& program) {
    if (GetFileAttributesW(ToWide(word).c_str()) != INVALID_FILE_ATTRIBUTES)
        return ", did you mean '" + std::string{program.program} + " " + std::string{program.forFile} + " " +
               word + "'?";
    std::string typed = word;
    std::transform(typed.begin(), typed.end(), typed.begin(), Lower);
    const std::string_view meant = Nearest(typed, program.commands);
    return meant.empty() ? std::string{} : ", did you mean '" + std::string{meant} + "'?";
}

void RequireCommand(const std::string& word, const scProgramWords& program) {
    const std::string name{program.program};
    if (std::find(program.commands.begin(), program.commands.end(), word) == program.commands.end())
        throw scFailure{ExitCode::usage, "",
                        "unknown command '" + word + "'" + SuggestionFor(word, program) + "\nTry '" + name +
                            " --help' or '" + name + " COMMAND --help'."};
}

} // namespace

std::vector<std::string> WithOptionsForWords(std::vector<std::string> words, const scProgramWords& program) {
    if (words.size() == 1 && words[0] == "version")
        return {"--version"};
    if (!words.empty() && words[0] == "help") {
        words.erase(words.begin());
        words.resize(std::min<std::size_t>(words.size(), 1));
        words.emplace_back("--help");
    }
    if (!words.empty() && !words[0].starts_with('-') && words[0] != "/?")
        RequireCommand(words[0], program);
    return words;
}

} // namespace tool
