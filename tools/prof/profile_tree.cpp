// Nodes are numbers in one array, so that depth costs memory and never stack. The way back into a profile is
// its XML form, which holds any name and value exactly; the library's calls would divide names at "/".
#include "profile_tree.h"

#include "tree_walk.h"
#include "xml_text.h"

#include <algorithm>

namespace tool::prof {

namespace {

// The beginnings of paths, the empty one first: which names go on from each, and whether a path ends there.
struct scWay {
    std::map<std::wstring_view, std::size_t> further;
    bool isPath = false;
};

std::vector<scWay> WaysOf(const std::set<Names>& paths) {
    std::vector<scWay> ways(1);
    for (const Names& path : paths) {
        std::size_t way = 0;
        for (const std::wstring& name : path) {
            const auto [place, isNew] = ways[way].further.try_emplace(name, ways.size());
            way = place->second;
            if (isNew)
                ways.emplace_back();
        }
        ways[way].isPath = true;
    }
    return ways;
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
        const std::optional<std::size_t> found = FirstNamed(list, *name, true);
        list = found ? *found : Append(list, {*name, {}, true, {}});
    }
    if (const std::optional<std::size_t> item = FirstNamed(list, path.back(), false))
        nodes_[*item].value = value;
    else
        Append(list, {path.back(), std::wstring{value}, false, {}});
}

void clsProfileTree::AppendItem(const Names& path, std::wstring_view value) {
    const std::size_t list = AppendedList(std::span{path}.first(path.size() - 1));
    Append(list, {path.back(), std::wstring{value}, false, {}});
}

void clsProfileTree::AppendList(const Names& path) {
    const std::size_t list = AppendedList(std::span{path}.first(path.size() - 1));
    const std::wstring& name = path.back();
    lastLists_[{list, name}] = Append(list, {name, {}, true, {}});
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
    clsXmlText xml;
    std::vector<scLevel> way{{0, 0}};
    while (!way.empty()) {
        scLevel& level = way.back();
        if (level.next == nodes_[level.list].entries.size()) {
            way.pop_back();
            if (!way.empty())
                xml.EndList();
            continue;
        }
        const std::size_t entry = nodes_[level.list].entries[level.next++];
        const scNode& node = nodes_[entry];
        if (node.isList) {
            xml.BeginList(node.name);
            way.push_back({entry, 0});
        } else {
            xml.Item(node.name, node.value);
        }
    }
    return clsProfile{std::move(xml).Open()};
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

std::optional<std::size_t> clsProfileTree::FirstNamed(std::size_t list, std::wstring_view name,
                                                      bool isList) const {
    const std::vector<std::size_t>& entries = nodes_[list].entries;
    const auto found = std::find_if(entries.begin(), entries.end(), [&](std::size_t entry) {
        return nodes_[entry].isList == isList && nodes_[entry].name == name;
    });
    return found != entries.end() ? std::optional{*found} : std::nullopt;
}

void clsProfileTree::Delete(const std::set<Names>& paths, bool areLists) {
    const std::vector<scWay> ways = WaysOf(paths);
    std::vector<std::pair<std::size_t, std::size_t>> waiting{{0, 0}}; // lists, and the way to each
    while (!waiting.empty()) {
        const std::size_t list = waiting.back().first;
        const scWay& way = ways[waiting.back().second];
        waiting.pop_back();
        std::erase_if(nodes_[list].entries, [&](std::size_t entry) {
            const scNode& node = nodes_[entry];
            const auto further = way.further.find(node.name);
            if (further == way.further.end())
                return false;
            if (node.isList && !(areLists && ways[further->second].isPath))
                waiting.emplace_back(entry, further->second);
            return node.isList == areLists && ways[further->second].isPath;
        });
    }
}

} // namespace tool::prof
