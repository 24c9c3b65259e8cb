// A rule is a named filter whose name is its colour. The first one that fits a line decides.
#include "highlights.h"

#include "fold.h"

#include <algorithm>
#include <iterator>

namespace tool::logpan {

namespace {

constexpr std::wstring_view colourNames[] = {L"red",  L"orange", L"yellow", L"green",
                                             L"cyan", L"blue",   L"violet", L"grey"};
static_assert(std::size(colourNames) == colourCount);

Colour ColourNamed(std::wstring_view name) {
    const auto found = std::find_if(std::begin(colourNames), std::end(colourNames),
                                    [name](std::wstring_view known) { return EqualFolded(known, name); });
    if (found == std::end(colourNames))
        throw scBadPattern{"colours are red, orange, yellow, green, cyan, blue, violet and grey"};
    return static_cast<Colour>(found - std::begin(colourNames));
}

} // namespace

clsHighlights::clsHighlights(const std::vector<scNamedFilter>& rules) {
    for (const scNamedFilter& rule : rules)
        rules_.push_back({ColourNamed(rule.name), MakeFilter(ParseFilter(rule.text))});
}

std::optional<Colour> clsHighlights::ColourOf(const scLine& line) const {
    for (const scRule& rule : rules_)
        if (rule.filter.Shows(line))
            return rule.colour;
    return std::nullopt;
}

} // namespace tool::logpan
