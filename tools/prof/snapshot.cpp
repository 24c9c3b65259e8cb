// Where a list ends is known when an entry follows that is no deeper than it; until then it is among those
// that are open.
#include "snapshot.h"

#include "tree_walk.h"

namespace tool::prof {

clsSnapshot::clsSnapshot(ProfJob job, ProfList start) {
    std::vector<std::size_t> open;
    const auto close = [&](std::size_t depth) {
        for (; open.size() > depth; open.pop_back())
            entries_[open.back()].next = entries_.size();
    };
    for (clsTreeWalk walk{job, start, clsTreeWalk::Scope::wholeTree}; walk.Next();) {
        const scEntry& entry = walk.Entry();
        close(entry.depth);
        const std::size_t name = text_.size(), value = name + entry.name.size();
        text_.append(entry.name).append(entry.value);
        if (entry.IsList())
            open.push_back(entries_.size());
        entries_.push_back({name, value, text_.size(), entries_.size() + 1, entry.IsList()});
    }
    close(0);
}

std::wstring_view clsSnapshot::Name(std::size_t entry) const {
    const scPlaces& places = entries_[entry];
    return std::wstring_view{text_}.substr(places.name, places.value - places.name);
}

std::wstring_view clsSnapshot::Value(std::size_t entry) const {
    const scPlaces& places = entries_[entry];
    return std::wstring_view{text_}.substr(places.value, places.end - places.value);
}

} // namespace tool::prof
