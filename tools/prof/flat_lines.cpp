// A list's own line is printed when it is known to be needed: at once when a list of its name came before it,
// else when it is left and nothing in it came.
#include "flat_lines.h"

#include "profile_tree.h"
#include "text_io.h"

#include <algorithm>
#include <set>

namespace tool::prof {

namespace {

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view wideByteOrderMark = "\xff\xfe"; // shells write it that pass on texts as UTF-16

// Follows a walk. The path grows and shrinks by one name, whatever the depth.
class clsFlatPrinter {
  public:
    explicit clsFlatPrinter(const Names& start) : path_(PathOf(start)), levels_(1) {}

    void Print(const scEntry& entry) {
        ReturnTo(entry.depth);
        if (entry.IsList())
            Enter(entry.name);
        else
            PrintItem(entry);
    }

    void Finish() { ReturnTo(0); }

  private:
    struct scLevel {
        std::size_t pathBefore = 0;
        std::set<std::wstring, std::less<>> lists; // that were entered from here
    };

    void ReturnTo(std::size_t depth) {
        if (isUntold_ && levels_.size() > depth + 1)
            PrintList();
        isUntold_ = false;
        for (; levels_.size() > depth + 1; levels_.pop_back())
            path_.resize(levels_.back().pathBefore);
    }

    void Enter(std::wstring_view name) {
        isUntold_ = levels_.back().lists.emplace(name).second;
        levels_.push_back({path_.size(), {}});
        path_ += L'/';
        AppendName(path_, name);
        if (!isUntold_)
            PrintList();
    }

    void PrintList() const { clsOutput::Standard().WriteLine(ToUtf8(path_) + '/'); }

    void PrintItem(const scEntry& entry) {
        line_.assign(path_).append(L"/");
        AppendName(line_, entry.name);
        line_ += L'=';
        AppendValue(line_, entry.value);
        clsOutput::Standard().WriteLine(ToUtf8(line_));
    }

    std::wstring path_;
    std::wstring line_;
    std::vector<scLevel> levels_;
    bool isUntold_ = false; // the list that was entered last has shown in no line yet
};

std::string_view TakeLine(std::string_view& lines) {
    std::string_view line = lines.substr(0, lines.find('\n'));
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

} // namespace

std::wstring PathOf(const Names& names) {
    std::wstring path;
    for (const std::wstring& name : names) {
        path += L'/';
        AppendName(path, name);
    }
    return path;
}

void PrintFlatItem(const Names& names, std::wstring_view value) {
    std::wstring line = PathOf(names) + L'=';
    AppendValue(line, value);
    clsOutput::Standard().WriteLine(ToUtf8(line));
}

void PrintFlatList(const Names& names) {
    clsOutput::Standard().WriteLine(ToUtf8(PathOf(names)) + '/');
}

void ShowFlat(clsTreeWalk& walk, const Names& start) {
    clsFlatPrinter printer{start};
    while (walk.Next())
        printer.Print(walk.Entry());
    printer.Finish();
}

clsProfile ProfileOfFlatLines(std::string_view lines, const std::string& name) {
    std::string converted;
    if (lines.starts_with(wideByteOrderMark)) {
        lines.remove_prefix(wideByteOrderMark.size());
        converted = ToUtf8({reinterpret_cast<const wchar_t*>(lines.data()), lines.size() / sizeof(wchar_t)});
        lines = converted;
    } else if (lines.starts_with(byteOrderMark)) {
        lines.remove_prefix(byteOrderMark.size());
    }
    clsProfileTree tree;
    for (std::size_t number = 1; !lines.empty(); ++number) {
        const std::string_view text = TakeLine(lines);
        if (text.empty() || text.starts_with('#'))
            continue;
        const std::optional<scFlatLine> line = ParseFlatLine(ToWide(text));
        if (!line)
            throw scFailure{ExitCode::malformed, name,
                            "line " + std::to_string(number) + ": is neither /LIST/ITEM=VALUE nor /LIST/"};
        if (line->value)
            tree.AppendItem(line->names, *line->value);
        else
            tree.AppendList(line->names);
    }
    return tree.ToProfile();
}

} // namespace tool::prof
