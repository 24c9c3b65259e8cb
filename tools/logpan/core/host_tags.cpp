// Names are those of files without path and extension, so most characters of other texts rule them out.
#include "host_tags.h"

#include "printable.h"
#include "severity.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::size_t tagWidth = 8;
constexpr std::size_t longestName = 255;
constexpr std::size_t mostKnown = 1000; // whoever sends more than that sends no names

bool isNameCharacter(wchar_t unit) {
    return !isControl(unit) && std::wstring_view{L"\\/:*?\"<>|"}.find(unit) == std::wstring_view::npos;
}

bool isName(std::wstring_view name) {
    return !name.empty() && name.size() <= longestName && name.front() != L' ' && name.back() != L' ' &&
           std::all_of(name.begin(), name.end(), isNameCharacter);
}

} // namespace

void HostTags::takeFrom(Line& line) {
    if (!line.module.empty())
        return;
    const std::wstring_view text = line.text;
    learnFromAnnouncement(text);
    const std::size_t colon = text.substr(0, longestName + 1).find(L':');
    if (colon == std::wstring_view::npos || colon < tagWidth)
        return;
    const std::wstring_view tag = text.substr(0, text.find_last_not_of(L' ', colon - 1) + 1);
    if (!isName(tag) || colon != std::max(tag.size(), tagWidth) || !isOfReport(tag, text.substr(colon + 1)))
        return;
    line.module = tag;
    const std::size_t start = std::min(text.find_first_not_of(L' ', colon + 1), text.size());
    line.level += start - (colon + 1);
    line.text.erase(0, start);
}

// "++report viewer.exe [C:\...] [...]" when a module comes, "--..." when it goes.
void HostTags::learnFromAnnouncement(std::wstring_view text) {
    if (!text.starts_with(L"++") && !text.starts_with(L"--"))
        return;
    const std::wstring_view name = text.substr(2, text.find(L" [") - 2);
    if (const std::size_t dot = name.rfind(L'.'); dot != std::wstring_view::npos)
        learn(name.substr(0, dot));
}

bool HostTags::isOfReport(std::wstring_view tag, std::wstring_view rest) {
    if (tag.size() < tagWidth || known_.contains(tag))
        return true;
    if (severityOf(rest) == Severity::none && !rest.starts_with(L"Util"))
        return false;
    learn(tag);
    return true;
}

void HostTags::learn(std::wstring_view tag) {
    if (isName(tag) && known_.size() < mostKnown)
        known_.emplace(tag);
}

} // namespace tool::logpan
