#include "files/file_pattern.h"

#include "platform/letter_case.h"

namespace tvut {

namespace {

constexpr std::size_t nowhere = std::u16string_view::npos;

std::u16string_view WithoutBlanksAround(std::u16string_view text) {
    const std::size_t first = text.find_first_not_of(u' ');
    return first == nowhere ? std::u16string_view()
                            : text.substr(first, text.find_last_not_of(u' ') + 1 - first);
}

bool MatchesOne(std::u16string_view name, std::u16string_view pattern) {
    return pattern[0] == u'?' || PlatformCompareIgnoringCase(name.substr(0, 1), pattern.substr(0, 1)) == 0;
}

} // namespace

std::u16string_view UtilpTakeFilePattern(std::u16string_view& patterns) {
    while (!patterns.empty()) {
        const std::size_t end = patterns.find(u';');
        const std::u16string_view element = WithoutBlanksAround(patterns.substr(0, end));
        patterns.remove_prefix(end == nowhere ? patterns.size() : end + 1);
        if (!element.empty())
            return element;
    }
    return {};
}

scFilePattern::scFilePattern(std::u16string_view text) {
    const std::size_t nameAt = text.find_last_of(u"\\/:") + 1; // nothing found: npos + 1 is 0
    folder = text.substr(0, nameAt);
    name = text.substr(nameAt);
}

// The last * that was passed takes one character more whenever what follows it does not match: an
// earlier one need never be tried again.
bool UtilpMatchesPattern(std::u16string_view name, std::u16string_view pattern) {
    if (pattern == u"*.*")
        return true;
    std::size_t at = 0, wanted = 0, star = nowhere, starTook = 0;
    while (at < name.size()) {
        if (wanted < pattern.size() && pattern[wanted] == u'*') {
            star = wanted++;
            starTook = at;
        } else if (wanted < pattern.size() && MatchesOne(name.substr(at), pattern.substr(wanted))) {
            ++at;
            ++wanted;
        } else if (star != nowhere) {
            wanted = star + 1;
            at = ++starTook;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', wanted) == nowhere;
}

} // namespace tvut
