// prof show: a profile for reading, as a tree or as full paths.
#include "commands.h"
#include "paths.h"
#include "text_io.h"
#include "tree_walk.h"

#include <algorithm>

namespace tool::prof {

namespace {

// Deeper entries stay at this indentation and tell their level: indenting each line by its depth would
// turn a deep profile into an output of the square of its size.
constexpr std::size_t deepestIndentation = 32;

void appendIndentation(std::string& line, std::size_t depth) {
    line.append(2 * std::min(depth, deepestIndentation), ' ');
    if (depth > deepestIndentation)
        line += std::to_string(depth) + "> ";
}

void appendEntry(std::string& line, const Entry& entry) {
    if (entry.isList())
        line += '[';
    appendEscaped(line, entry.name);
    line += entry.isList() ? ']' : '=';
    appendEscaped(line, entry.value);
}

void showTree(TreeWalk& walk) {
    std::string line;
    while (walk.next()) {
        line.clear();
        appendIndentation(line, walk.entry().depth);
        appendEntry(line, walk.entry());
        Output::standard().writeLine(line);
    }
}

// The path of the list that is being walked: grows and shrinks by one name, whatever the depth.
class ListPath {
  public:
    explicit ListPath(std::string start) : text_(std::move(start)) {}

    const std::string& at(std::size_t depth) {
        while (ends_.size() > depth) {
            text_.resize(ends_.back());
            ends_.pop_back();
        }
        return text_;
    }

    void enter(std::wstring_view name) {
        ends_.push_back(text_.size());
        text_ += '/';
        appendEscaped(text_, name);
    }

  private:
    std::string text_;
    std::vector<std::size_t> ends_;
};

std::string fullPath(const std::string& path) {
    if (path.empty() || path == "/")
        return {};
    return path.starts_with('/') ? path : '/' + path;
}

void showFlat(TreeWalk& walk, const std::string& start) {
    ListPath path{fullPath(start)};
    std::string line;
    while (walk.next()) {
        const Entry& entry = walk.entry();
        const std::string& parent = path.at(entry.depth);
        if (entry.isList()) {
            path.enter(entry.name);
            continue;
        }
        line.clear();
        appendEntry(line, entry);
        Output::standard().write(parent);
        Output::standard().write("/");
        Output::standard().writeLine(line);
    }
}

} // namespace

ExitCode runShow(const Arguments& arguments) {
    const Profile profile = Profile::open(arguments.file, arguments.plainIni);
    const ProfList start = findList(profile, arguments.file, arguments.path);
    TreeWalk walk{profile.job(), start, TreeWalk::Scope::wholeTree};
    if (arguments.flat)
        showFlat(walk, arguments.path);
    else
        showTree(walk);
    return ExitCode::ok;
}

} // namespace tool::prof
