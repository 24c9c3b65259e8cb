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

std::vector<std::wstring> SegmentsOf(std::wstring_view path) {
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

void AppendListsNamed(std::vector<ProfList>& found, ProfJob job, ProfList parent, std::wstring_view name) {
    for (clsTreeWalk walk{job, parent, clsTreeWalk::Scope::oneList}; walk.Next();)
        if (walk.Entry().IsList() && walk.Entry().name == name)
            found.push_back(walk.Entry().list);
}

std::vector<ProfList> ListsNamed(ProfJob job, const std::vector<ProfList>& parents, std::wstring_view name) {
    std::vector<ProfList> found;
    for (const ProfList parent : parents)
        AppendListsNamed(found, job, parent, name);
    return found;
}

// The lists that the first segments reach.
std::vector<ProfList> ListsAlong(ProfJob job, const std::vector<std::wstring>& segments, std::size_t count) {
    std::vector<ProfList> lists{nullptr};
    for (std::size_t at = 0; at < count; ++at)
        lists = ListsNamed(job, lists, segments[at]);
    return lists;
}

bool HoldsItem(ProfJob job, ProfList list, std::wstring_view name) {
    for (clsTreeWalk walk{job, list, clsTreeWalk::Scope::oneList}; walk.Next();)
        if (!walk.Entry().IsList() && walk.Entry().name == name)
            return true;
    return false;
}

[[noreturn]] void Refuse(const std::string& path, const char* reason) {
    throw scFailure{ExitCode::usage, path, reason};
}

// What the text form writes in the place of "=", "[", "]" and control characters.
bool StandsForAnother(wchar_t unit) {
    return unit == L'\x2338' || unit == L'\x301A' || unit == L'\x301B' || (unit > 0x2400 && unit < 0x2420);
}

bool IsControl(wchar_t unit) {
    return unit < 0x20;
}

} // namespace

ProfList FindList(const clsProfile& profile, const std::string& file, const std::string& path) {
    if (path.empty() || path == "/")
        return nullptr;
    const ProfList list = ProfGetListW(profile.Job(), nullptr, ToWide(path).c_str());
    if (list == nullptr)
        throw scFailure{ExitCode::notFound, DisplayName(file), "there is no list " + path};
    return list;
}

bool ReachesItem(ProfJob job, const std::string& path) {
    const std::vector<std::wstring> segments = SegmentsOf(ToWide(path));
    const std::vector<ProfList> lists = ListsAlong(job, segments, segments.size() - 1);
    return std::any_of(lists.begin(), lists.end(),
                       [&](ProfList list) { return HoldsItem(job, list, segments.back()); });
}

bool ReachesList(ProfJob job, const std::string& path) {
    const std::vector<std::wstring> segments = SegmentsOf(ToWide(path));
    return !ListsAlong(job, segments, segments.size()).empty();
}

void RequirePath(const std::string& path) {
    if (path.empty())
        throw scFailure{
            ExitCode::usage, "",
            "the path is empty; an item is named by its lists and its own name, like Print/Copies"};
}

void RequireStorablePath(const std::string& path) {
    RequirePath(path);
    const std::vector<std::wstring> segments = SegmentsOf(ToWide(path));
    const std::wstring& item = segments.back();
    if (item.empty())
        Refuse(path, "the path ends in \"/\": the item's name is missing");
    if (std::wstring_view{L"#;{} \t"}.find(item.front()) != std::wstring_view::npos)
        Refuse(path, "an item whose name begins with # ; { } or a blank would not be read again");
    if (std::any_of(item.begin(), item.end(), StandsForAnother))
        Refuse(path, "an item's name cannot hold the characters that stand for others in a file");
    for (auto list = segments.begin(); list != segments.end() - 1; ++list)
        if (std::any_of(list->begin(), list->end(), IsControl))
            Refuse(path, "a list's name cannot hold control characters");
}

} // namespace tool::prof
