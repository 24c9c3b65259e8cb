// Walks paths name by name where the library's own look-up does not answer the question.
#include "paths.h"

#include "exit_code.h"
#include "text_io.h"
#include "tree_walk.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace tool::prof {

namespace {

constexpr std::size_t longestFollowedName = 255; // the library cuts longer ones

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

// The lists that the first names reach.
std::vector<ProfList> ListsAlong(ProfJob job, const Names& names, std::size_t count) {
    std::vector<ProfList> lists{nullptr};
    for (std::size_t at = 0; at < count; ++at)
        lists = ListsNamed(job, lists, names[at]);
    return lists;
}

// The first item of a name in one list.
std::optional<std::wstring> ItemIn(ProfJob job, ProfList list, std::wstring_view name) {
    for (clsTreeWalk walk{job, list, clsTreeWalk::Scope::oneList}; walk.Next();)
        if (!walk.Entry().IsList() && walk.Entry().name == name)
            return std::wstring{walk.Entry().value};
    return std::nullopt;
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
    ProfList list = nullptr;
    if (!path.empty() && path != "/" && !FindList(profile.Job(), NamesInPath(ToWide(path)), list))
        throw scFailure{ExitCode::notFound, DisplayName(file), "there is no list " + path};
    return list;
}

bool FindList(ProfJob job, std::span<const std::wstring> names, ProfList& list) {
    for (const std::wstring& name : names) {
        const std::vector<ProfList> found = ListsNamed(job, {list}, name);
        if (found.empty())
            return false;
        list = found.front();
    }
    return true;
}

std::optional<std::wstring> FindItem(ProfJob job, const Names& names) {
    ProfList list = nullptr;
    return FindList(job, std::span{names}.first(names.size() - 1), list) ? ItemIn(job, list, names.back())
                                                                         : std::nullopt;
}

bool ReachesItem(ProfJob job, const Names& names) {
    const std::vector<ProfList> lists = ListsAlong(job, names, names.size() - 1);
    return std::any_of(lists.begin(), lists.end(),
                       [&](ProfList list) { return ItemIn(job, list, names.back()).has_value(); });
}

bool ReachesList(ProfJob job, const Names& names) {
    return !ListsAlong(job, names, names.size()).empty();
}

std::optional<std::wstring> LibraryPath(const Names& names) {
    std::wstring path;
    for (const std::wstring& name : names) {
        if (name.find(L'/') != name.npos || name.size() > longestFollowedName)
            return std::nullopt;
        path.append(L"/").append(name);
    }
    return path;
}

void RequirePath(const std::string& path) {
    if (path.empty())
        throw scFailure{
            ExitCode::usage, "",
            "the path is empty; an item is named by its lists and its own name, like Print/Copies"};
}

void RequireStorablePath(const std::string& path) {
    RequirePath(path);
    const Names names = NamesInPath(ToWide(path));
    const std::wstring& item = names.back();
    if (item.empty())
        Refuse(path, "the path ends in \"/\": the item's name is missing");
    if (std::wstring_view{L"#;{} \t"}.find(item.front()) != std::wstring_view::npos)
        Refuse(path, "an item whose name begins with # ; { } or a blank would not be read again");
    if (std::any_of(item.begin(), item.end(), StandsForAnother))
        Refuse(path, "an item's name cannot hold the characters that stand for others in a file");
    for (auto list = names.begin(); list != names.end() - 1; ++list)
        if (std::any_of(list->begin(), list->end(), IsControl))
            Refuse(path, "a list's name cannot hold control characters");
}

} // namespace tool::prof
