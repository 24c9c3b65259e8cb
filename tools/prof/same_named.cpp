// A hash of name and kind leads to the place of all entries that have both, so the work is one look-up an
// entry.
#include "same_named.h"

#include <functional>
#include <unordered_map>

namespace tool::prof {

namespace {

struct scKey {
    std::wstring_view name;
    bool isList;
    bool operator==(const scKey&) const = default;
};

struct scHash {
    std::size_t operator()(const scKey& key) const {
        return std::hash<std::wstring_view>{}(key.name) + (key.isList ? 1 : 0);
    }
};

} // namespace

std::vector<scSameNamed> SameNamed(const scEntries& left, const scEntries& right) {
    std::vector<scSameNamed> found;
    std::unordered_map<scKey, std::size_t, scHash> places;
    const auto collect = [&](const scEntries& entries, std::vector<std::size_t> scSameNamed::*side) {
        const clsSnapshot& all = *entries.snapshot;
        for (std::size_t entry = entries.begin; entry < entries.end; entry = all.Next(entry)) {
            const scKey key{all.Name(entry), all.IsList(entry)};
            const auto [place, isNew] = places.try_emplace(key, found.size());
            if (isNew)
                found.push_back({key.name, key.isList, {}, {}});
            (found[place->second].*side).push_back(entry);
        }
    };
    collect(left, &scSameNamed::left);
    collect(right, &scSameNamed::right);
    return found;
}

} // namespace tool::prof
