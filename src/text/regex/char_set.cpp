// A set is collected as ranges and finished once: merged, with a bit for each unit below 256, a bit for every
// unit where there are many ranges, and the units outside where those are few. What is asked per character is
// then a look at one bit or a search for the next unit outside.
#include "text/regex/char_set.h"

#include "text/regex/letter_pairs.h"

#include <algorithm>

namespace tvut {

void clsCharSet::Add(char16_t first, char16_t last) {
    ranges_.push_back({first, last});
}

void clsCharSet::Add(const clsCharSet& other) {
    ranges_.insert(ranges_.end(), other.ranges_.begin(), other.ranges_.end());
}

void clsCharSet::AddOtherCases() {
    Merge(); // or a range that is named a thousand times would bring its letters a thousand times
    const std::size_t count = ranges_.size();
    for (std::size_t at = 0; at < count; ++at) {
        for (const scLetterPairs& pairs : UtilpLetterPairs()) {
            const unsigned lastLower = pairs.lastUpper + pairs.distance;
            const unsigned first = std::max<unsigned>(ranges_[at].first, pairs.firstUpper);
            const unsigned last = std::min<unsigned>(ranges_[at].last, lastLower);
            for (unsigned unit = first; unit <= last; ++unit)
                Add(UtilpOtherCase(static_cast<char16_t>(unit)));
        }
    }
    Merge();
}

void clsCharSet::Merge() {
    std::sort(ranges_.begin(), ranges_.end(), [](scRange a, scRange b) { return a.first < b.first; });
    std::vector<scRange> merged;
    for (const scRange range : ranges_) {
        if (!merged.empty() && range.first <= merged.back().last + 1)
            merged.back().last = std::max(merged.back().last, range.last);
        else
            merged.push_back(range);
    }
    ranges_ = std::move(merged);
}

void clsCharSet::Invert() {
    Merge();
    std::vector<scRange> others;
    unsigned next = 0;
    for (const scRange range : ranges_) {
        if (range.first > next)
            others.push_back({static_cast<char16_t>(next), static_cast<char16_t>(range.first - 1)});
        next = range.last + 1u;
    }
    if (next <= 0xFFFF)
        others.push_back({static_cast<char16_t>(next), 0xFFFF});
    ranges_ = std::move(others);
}

void clsCharSet::Finish() {
    Merge();
    low_.fill(0);
    std::size_t inside = 0;
    for (const scRange range : ranges_) {
        inside += range.last - range.first + 1u;
        for (unsigned unit = range.first; unit <= range.last && unit < lowUnits; ++unit)
            low_[unit / 32] |= 1u << unit % 32;
    }
    if (ranges_.size() > mostSearchedRanges)
        FillBits();
    const std::size_t outside = allUnits - inside;
    all_ = outside == 0;
    if (outside == 0 || outside > clsFewUnits::most)
        return;
    clsCharSet others = *this;
    others.Invert();
    std::array<char16_t, clsFewUnits::most> units{};
    std::size_t count = 0;
    for (const scRange range : others.ranges_) {
        for (unsigned unit = range.first; unit <= range.last; ++unit)
            units[count++] = static_cast<char16_t>(unit);
    }
    std::fill(units.begin() + static_cast<std::ptrdiff_t>(count), units.end(), units[0]);
    missing_ = clsFewUnits{units[0], units[1], units[2], units[3]};
}

void clsCharSet::FillBits() {
    bits_.assign(allUnits, false);
    for (const scRange range : ranges_)
        std::fill(bits_.begin() + range.first, bits_.begin() + range.last + 1, true);
}

bool clsCharSet::HasHigh(char16_t unit) const {
    if (!bits_.empty())
        return bits_[unit];
    const auto after = std::upper_bound(ranges_.begin(), ranges_.end(), unit,
                                        [](char16_t u, scRange range) { return u < range.first; });
    return after != ranges_.begin() && unit <= std::prev(after)->last;
}

const char16_t* clsCharSet::RunEnd(const char16_t* text, const char16_t* end) const {
    if (all_)
        return end;
    if (missing_)
        return UtilpFindAny(text, end, *missing_);
    while (text != end && Has(*text))
        ++text;
    return text;
}

} // namespace tvut
