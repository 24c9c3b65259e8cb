// Walks paths segment by segment where the library's own look-up does not answer the question.
#include "paths.h"

#include "exit_code.h"
#include "text_io.h"
#include "tree_walk.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace tool::prof {

namespace {

constexpr std::size_t comparedLength = 255; // of a segment that another one follows

std::vector<std::wstring> segmentsOf(std::wstring_view path) {
    if (path.starts_with(L'/'))
        path.remove_prefix(1);
    std::vector<std::wstring> segments;
    for (;;) {
        const std::size_t end = path.find(L'/');
        if (end == std::wstring_view::npos)
            break;
        segments.emplace_back(path.substr(0, std::min(end, comparedLength)));
        path.remove_prefix(end + 1);
    }
    segments.emplace_back(path);
    return segments;
}

void appendListsNamed(std::vector<ProfList>& found, ProfJob job, ProfList parent, std::wstring_view name) {
    for (TreeWalk walk{job, parent, TreeWalk::Scope::oneList}; walk.next();)
        if (walk.entry().isList() && walk.entry().name == name)
            found.push_back(walk.entry().list);
}

std::vector<ProfList> listsNamed(ProfJob job, const std::vector<ProfList>& parents, std::wstring_view name) {
    std::vector<ProfList> found;
    for (const ProfList parent : parents)
        appendListsNamed(found, job, parent, name);
    return found;
}

// The lists that the first segments reach.
std::vector<ProfList> listsAlong(ProfJob job, const std::vector<std::wstring>& segments, std::size_t count) {
    std::vector<ProfList> lists{nullptr};
    for (std::size_t at = 0; at < count; ++at)
        lists = listsNamed(job, lists, segments[at]);
    return lists;
}

bool holdsItem(ProfJob job, ProfList list, std::wstring_view name) {
    for (TreeWalk walk{job, list, TreeWalk::Scope::oneList}; walk.next();)
        if (!walk.entry().isList() && walk.entry().name == name)
            return true;
    return false;
}

[[noreturn]] void refuse(const std::string& path, const char* reason) {
    throw Failure{ExitCode::usage, path, reason};
}

// What the text form writes in the place of "=", "[", "]" and control characters.
bool standsForAnother(wchar_t unit) {
    return unit == L'\x2338' || unit == L'\x301A' || unit == L'\x301B' || (unit > 0x2400 && unit < 0x2420);
}

bool isControl(wchar_t unit) {
    return unit < 0x20;
}

} // namespace

ProfList findList(const Profile& profile, const std::string& file, const std::string& path) {
    if (path.empty() || path == "/")
        return nullptr;
    const ProfList list = ProfGetListW(profile.job(), nullptr, toWide(path).c_str());
    if (list == nullptr)
        throw Failure{ExitCode::notFound, displayName(file), "there is no list " + path};
    return list;
}

bool reachesItem(ProfJob job, const std::string& path) {
    const std::vector<std::wstring> segments = segmentsOf(toWide(path));
    const std::vector<ProfList> lists = listsAlong(job, segments, segments.size() - 1);
    return std::any_of(lists.begin(), lists.end(),
                       [&](ProfList list) { return holdsItem(job, list, segments.back()); });
}

bool reachesList(ProfJob job, const std::string& path) {
    const std::vector<std::wstring> segments = segmentsOf(toWide(path));
    return !listsAlong(job, segments, segments.size()).empty();
}

void requirePath(const std::string& path) {
    if (path.empty())
        throw Failure{ExitCode::usage, "",
                      "the path is empty; an item is named by its lists and its own name, like Print/Copies"};
}

void requireStorablePath(const std::string& path) {
    requirePath(path);
    const std::vector<std::wstring> segments = segmentsOf(toWide(path));
    const std::wstring& item = segments.back();
    if (item.empty())
        refuse(path, "the path ends in \"/\": the item's name is missing");
    if (std::wstring_view{L"#;{} \t"}.find(item.front()) != std::wstring_view::npos)
        refuse(path, "an item whose name begins with # ; { } or a blank would not be read again");
    if (std::any_of(item.begin(), item.end(), standsForAnother))
        refuse(path, "an item's name cannot hold the characters that stand for others in a file");
    for (auto list = segments.begin(); list != segments.end() - 1; ++list)
        if (std::any_of(list->begin(), list->end(), isControl))
            refuse(path, "a list's name cannot hold control characters");
}

} // namespace tool::prof
