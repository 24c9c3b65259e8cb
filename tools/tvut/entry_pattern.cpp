#include "entry_pattern.h"

#include "text_io.h"

#include <windows.h>

#include <algorithm>

namespace tool::tvut {

namespace {

bool IsSame(wchar_t a, wchar_t b) {
    return CompareStringOrdinal(&a, 1, &b, 1, TRUE) == CSTR_EQUAL;
}

// The last * that was passed takes one character more whenever what follows it does not match.
bool IsMatch(std::wstring_view name, std::wstring_view pattern) {
    std::size_t at = 0, wanted = 0, star = pattern.npos, starTook = 0;
    while (at < name.size()) {
        if (wanted < pattern.size() && pattern[wanted] == L'*') {
            star = wanted++;
            starTook = at;
        } else if (wanted < pattern.size() && (pattern[wanted] == L'?' || IsSame(name[at], pattern[wanted]))) {
            ++at;
            ++wanted;
        } else if (star != pattern.npos) {
            wanted = star + 1;
            at = ++starTook;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(L'*', wanted) == pattern.npos;
}

std::wstring_view LastComponent(std::wstring_view name) {
    return name.substr(name.rfind(L'/') + 1); // nothing found: npos + 1 is 0
}

} // namespace

clsEntryPatterns::clsEntryPatterns(const std::vector<std::string>& patterns) : used_(patterns.size()) {
    for (const std::string& pattern : patterns) {
        patterns_.push_back(toWide(pattern));
        std::ranges::replace(patterns_.back(), L'\\', L'/');
    }
}

bool clsEntryPatterns::Match(std::wstring_view name) {
    if (name.ends_with(L'/'))
        name.remove_suffix(1);
    bool isMatch = patterns_.empty();
    for (std::size_t number = 0; number < patterns_.size(); ++number) {
        const std::wstring& pattern = patterns_[number];
        const bool isWhole = pattern.find(L'/') != pattern.npos;
        if (!IsMatch(isWhole ? name : LastComponent(name), pattern))
            continue;
        isMatch = true;
        used_[number] = true;
    }
    return isMatch;
}

const std::wstring* clsEntryPatterns::FirstUnused() const {
    const auto unused = std::ranges::find(used_, false);
    return unused == used_.end() ? nullptr : &patterns_[static_cast<std::size_t>(unused - used_.begin())];
}

} // namespace tool::tvut
