// prof show: a profile for reading, as a tree or as full paths.
#include "commands.h"
#include "json_commands.h"
#include "paths.h"
#include "text_io.h"
#include "tree_walk.h"

#include <algorithm>

namespace tool::prof {

namespace {

// Deeper entries stay at this indentation and show their level: indenting each line by its depth would
// turn a deep profile into an output of the square of its size.
constexpr std::size_t deepestIndentation = 32;

void AppendIndentation(std::string& line, std::size_t depth) {
    line.append(2 * std::min(depth, deepestIndentation), ' ');
    if (depth > deepestIndentation)
        line += std::to_string(depth) + "> ";
}

void AppendEntry(std::string& line, const scEntry& entry) {
    if (entry.IsList())
        line += '[';
    AppendEscaped(line, entry.name);
    line += entry.IsList() ? ']' : '=';
    AppendEscaped(line, entry.value);
}

void ShowTree(clsTreeWalk& walk) {
    std::string line;
    while (walk.Next()) {
        line.clear();
        AppendIndentation(line, walk.Entry().depth);
        AppendEntry(line, walk.Entry());
        clsOutput::Standard().WriteLine(line);
    }
}

// The path of the list that is being walked: grows and shrinks by one name, whatever the depth.
class clsListPath {
  public:
    explicit clsListPath(std::string start) : text_(std::move(start)) {}

    const std::string& At(std::size_t depth) {
        while (ends_.size() > depth) {
            text_.resize(ends_.back());
            ends_.pop_back();
        }
        return text_;
    }

    void Enter(std::wstring_view name) {
        ends_.push_back(text_.size());
        text_ += '/';
        AppendEscaped(text_, name);
    }

  private:
    std::string text_;
    std::vector<std::size_t> ends_;
};

std::string FullPath(const std::string& path) {
    if (path.empty() || path == "/")
        return {};
    return path.starts_with('/') ? path : '/' + path;
}

void ShowFlat(clsTreeWalk& walk, const std::string& start) {
    clsListPath path{FullPath(start)};
    std::string line;
    while (walk.Next()) {
        const scEntry& entry = walk.Entry();
        const std::string& parent = path.At(entry.depth);
        if (entry.IsList()) {
            path.Enter(entry.name);
            continue;
        }
        line.clear();
        AppendEntry(line, entry);
        clsOutput::Standard().Write(parent);
        clsOutput::Standard().Write("/");
        clsOutput::Standard().WriteLine(line);
    }
}

} // namespace

ExitCode RunShow(const scArguments& arguments) {
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    const ProfList start = FindList(profile, arguments.file, arguments.path);
    if (arguments.json) {
        PrintJsonList(profile, start, arguments);
        return ExitCode::ok;
    }
    clsTreeWalk walk{profile.Job(), start, clsTreeWalk::Scope::wholeTree};
    if (arguments.flat)
        ShowFlat(walk, arguments.path);
    else
        ShowTree(walk);
    return ExitCode::ok;
}

} // namespace tool::prof
