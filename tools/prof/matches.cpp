// A pattern's names are followed one after another through all lists found so far, so the work is that of
// walking these lists once.
#include "matches.h"

#include "tree_walk.h"

namespace tool::prof {

namespace {

struct scPlace {
    Names names;
    ProfList list;
};

// Appends the lists of a place whose names match, or every entry.
template <typename Take>
void ForMatches(ProfJob job, const std::vector<scPlace>& places, std::wstring_view pattern, Take take) {
    for (const scPlace& place : places)
        for (clsTreeWalk walk{job, place.list, clsTreeWalk::Scope::oneList}; walk.Next();)
            if (IsMatch(walk.Entry().name, pattern)) {
                Names names = place.names;
                names.emplace_back(walk.Entry().name);
                take(std::move(names), walk.Entry());
            }
}

} // namespace

std::vector<scMatch> MatchesOf(ProfJob job, std::wstring_view path) {
    const Names patterns = PatternsInPath(path);
    std::vector<scPlace> places{{{}, nullptr}};
    for (auto pattern = patterns.begin(); pattern != patterns.end() - 1; ++pattern) {
        std::vector<scPlace> next;
        ForMatches(job, places, *pattern, [&](Names names, const scEntry& entry) {
            if (entry.IsList())
                next.push_back({std::move(names), entry.list});
        });
        places = std::move(next);
    }
    std::vector<scMatch> found;
    ForMatches(job, places, patterns.back(), [&](Names names, const scEntry& entry) {
        found.push_back({std::move(names), std::wstring{entry.value}, entry.list});
    });
    return found;
}

} // namespace tool::prof
