// Nodes are numbers in one array, so that depth costs memory and never stack. The way back into a profile is
// its XML form, which holds any name and value exactly; the library's calls would divide names at "/".
#include "profile_tree.h"

#include "tree_walk.h"

#include <algorithm>

namespace tool::prof {

namespace {

void AppendXml(std::wstring& text, std::wstring_view value) {
    for (const wchar_t unit : value)
        if (unit < 0x20 || std::wstring_view{L"<>&'\""}.find(unit) != std::wstring_view::npos)
            text += L"&#" + std::to_wstring(unit) + L';';
        else
            text += unit;
}

void AppendElement(std::wstring& text, std::wstring_view tag, std::wstring_view name) {
    text += tag;
    AppendXml(text, name);
    text += L"\">";
}

} // namespace

clsProfileTree::clsProfileTree(const clsProfile& profile) : clsProfileTree() {
    std::vector<std::size_t> way{0};
    for (clsTreeWalk walk{profile.Job(), nullptr, clsTreeWalk::Scope::wholeTree}; walk.Next();) {
        const scEntry& entry = walk.Entry();
        way.resize(entry.depth + 1);
        way.push_back(
            Append(way.back(), {std::wstring{entry.name}, std::wstring{entry.value}, entry.IsList(), {}}));
    }
}

void clsProfileTree::Set(const Names& path, std::wstring_view value) {
    std::size_t list = 0;
    for (auto name = path.begin(); name != path.end() - 1; ++name) {
        const auto found = EntriesNamed({list}, *name, true);
        list = found.empty() ? Append(list, {*name, {}, true, {}}) : found.front();
    }
    const auto items = EntriesNamed({list}, path.back(), false);
    if (items.empty())
        Append(list, {path.back(), std::wstring{value}, false, {}});
    else
        nodes_[items.front()].value = value;
}

void clsProfileTree::AppendItem(const Names& path, std::wstring_view value) {
    const std::size_t list = AppendedList(std::span{path}.first(path.size() - 1));
    Append(list, {path.back(), std::wstring{value}, false, {}});
}

void clsProfileTree::AppendList(const Names& path) {
    const std::size_t list = AppendedList(std::span{path}.first(path.size() - 1));
    lastLists_[{list, path.back()}] = Append(list, {path.back(), {}, true, {}});
}

std::size_t clsProfileTree::AppendedList(std::span<const std::wstring> way) {
    std::size_t list = 0;
    for (const std::wstring& name : way) {
        const auto [place, isNew] = lastLists_.try_emplace({list, name}, 0);
        if (isNew)
            place->second = Append(list, {name, {}, true, {}});
        list = place->second;
    }
    return list;
}

clsProfile clsProfileTree::ToProfile() const {
    struct scLevel {
        std::size_t list;
        std::size_t next;
    };
    std::wstring text = L"\xfeff<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\n<profile>\n";
    std::vector<scLevel> way{{0, 0}};
    while (!way.empty()) {
        scLevel& level = way.back();
        if (level.next == nodes_[level.list].entries.size()) {
            text += way.size() == 1 ? L"</profile>\n" : L"</list>\n";
            way.pop_back();
            continue;
        }
        const std::size_t entry = nodes_[level.list].entries[level.next++];
        AppendElement(text, nodes_[entry].isList ? L"<list name=\"" : L"<item name=\"", nodes_[entry].name);
        if (nodes_[entry].isList) {
            text += L'\n';
            way.push_back({entry, 0});
        } else {
            AppendXml(text, nodes_[entry].value);
            text += L"</item>\n";
        }
    }
    return clsProfile::OfBytes({reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)},
                               "the changed profile", 0);
}

std::vector<std::wstring> clsProfileTree::IniLines() const {
    std::vector<std::wstring> items;
    std::vector<std::wstring> lists;
    const auto itemLine = [&](std::size_t item) { return nodes_[item].name + L'=' + nodes_[item].value; };
    for (const std::size_t entry : nodes_.front().entries) {
        if (!nodes_[entry].isList) {
            items.push_back(itemLine(entry));
            continue;
        }
        lists.push_back(L'[' + nodes_[entry].name);
        for (const std::size_t item : nodes_[entry].entries)
            lists.push_back(itemLine(item));
    }
    items.insert(items.end(), lists.begin(), lists.end());
    return items;
}

std::size_t clsProfileTree::Append(std::size_t list, scNode node) {
    nodes_.push_back(std::move(node));
    nodes_[list].entries.push_back(nodes_.size() - 1);
    return nodes_.size() - 1;
}

std::vector<std::size_t> clsProfileTree::EntriesNamed(const std::vector<std::size_t>& lists,
                                                      std::wstring_view name, bool areLists) const {
    std::vector<std::size_t> found;
    for (const std::size_t list : lists)
        for (const std::size_t entry : nodes_[list].entries)
            if (nodes_[entry].isList == areLists && nodes_[entry].name == name)
                found.push_back(entry);
    return found;
}

std::size_t clsProfileTree::Delete(const Names& path, bool areLists) {
    std::vector<std::size_t> lists{0};
    for (auto name = path.begin(); name != path.end() - 1; ++name)
        lists = EntriesNamed(lists, *name, true);
    std::size_t count = 0;
    for (const std::size_t list : lists)
        count += std::erase_if(nodes_[list].entries, [&](std::size_t entry) {
            return nodes_[entry].isList == areLists && nodes_[entry].name == path.back();
        });
    return count;
}

} // namespace tool::prof
