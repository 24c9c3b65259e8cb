// Nodes are numbers in one array, so that depth costs memory and never stack.
#include "profile_tree.h"

#include "tree_walk.h"

#include <algorithm>

namespace tool::prof {

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
