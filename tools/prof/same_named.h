// What two lists hold under the same names.
#pragma once

#include "snapshot.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace tool::prof {

// Entries from a first one up to another, with their snapshot.
struct scEntries {
    const clsSnapshot* snapshot;
    std::size_t begin;
    std::size_t end;
};

inline scEntries AllOf(const clsSnapshot& snapshot) {
    return {&snapshot, 0, snapshot.End()};
}
inline scEntries In(const clsSnapshot& snapshot, std::size_t list) {
    return {&snapshot, list + 1, snapshot.Next(list)};
}

// All items, or all lists, of one name; in order.
struct scSameNamed {
    std::wstring_view name;
    bool isList;
    std::vector<std::size_t> left;
    std::vector<std::size_t> right;
};

// In the order in which the names first come, on the left and then on the right. One look at each entry.
std::vector<scSameNamed> SameNamed(const scEntries& left, const scEntries& right);

} // namespace tool::prof
