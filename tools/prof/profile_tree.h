// A profile's tree in the tool's own memory. Unlike the library's paths, it reaches names that hold "/".
#pragma once

#include "escapes.h"
#include "profile.h"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tool::prof {

class clsProfileTree {
  public:
    clsProfileTree() : nodes_(1) {}
    explicit clsProfileTree(const clsProfile& profile);

    // As the library does with its paths: a value for the first item, or a new one in lists that are made
    // when they are missing; all items or lists that all lists of each name lead to. However many paths there
    // are, each entry is looked at once.
    void Set(const Names& path, std::wstring_view value);
    void DeleteItems(const std::set<Names>& paths) { Delete(paths, false); }
    void DeleteLists(const std::set<Names>& paths) { Delete(paths, true); }

    // New entries in the list that was last made under each name of the way; lists that are missing are made.
    void AppendItem(const Names& path, std::wstring_view value);
    void AppendList(const Names& path);

    // Throws std::bad_alloc.
    clsProfile ToProfile() const;

    // What a plain INI file can hold of it, in the order of such files: items of the root list before all
    // lists.
    std::vector<std::wstring> IniLines() const;

  private:
    struct scNode {
        std::wstring name;
        std::wstring value;
        bool isList = true;
        std::vector<std::size_t> entries;
    };

    std::size_t Append(std::size_t list, scNode node);
    std::size_t AppendedList(std::span<const std::wstring> way);
    std::optional<std::size_t> FirstNamed(std::size_t list, std::wstring_view name, bool isList) const;
    void Delete(const std::set<Names>& paths, bool areLists);

    std::map<std::pair<std::size_t, std::wstring>, std::size_t> lastLists_; // of those that were appended
    std::vector<scNode> nodes_; // the root list first; what was deleted stays, but no list leads there
};

} // namespace tool::prof
