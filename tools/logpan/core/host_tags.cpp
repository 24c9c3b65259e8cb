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

bool IsNameCharacter(wchar_t unit) {
    return !IsControl(unit) && std::wstring_view{L"\\/:*?\"<>|"}.find(unit) == std::wstring_view::npos;
}

bool IsName(std::wstring_view name) {
    return !name.empty() && name.size() <= longestName && name.front() != L' ' && name.back() != L' ' &&
           std::all_of(name.begin(), name.end(), IsNameCharacter);
}

} // namespace

void clsHostTags::TakeFrom(scLine& line) {
    if (!line.module.empty())
        return;
    const std::wstring_view text = line.text;
    LearnFromAnnouncement(text);
    const std::size_t colon = text.substr(0, longestName + 1).find(L':');
    if (colon == std::wstring_view::npos || colon < tagWidth)
        return;
    const std::wstring_view tag = text.substr(0, text.find_last_not_of(L' ', colon - 1) + 1);
    if (!IsName(tag) || colon != std::max(tag.size(), tagWidth) || !IsOfReport(tag, text.substr(colon + 1)))
        return;
    line.module = tag;
    const std::size_t start = std::min(text.find_first_not_of(L' ', colon + 1), text.size());
    line.level += start - (colon + 1);
    line.text.erase(0, start);
}

// "++report viewer.exe [C:\...] [...]" when a module comes, "--..." when it goes.
void clsHostTags::LearnFromAnnouncement(std::wstring_view text) {
    if (!text.starts_with(L"++") && !text.starts_with(L"--"))
        return;
    const std::wstring_view name = text.substr(2, text.find(L" [") - 2);
    if (const std::size_t dot = name.rfind(L'.'); dot != std::wstring_view::npos)
        Learn(name.substr(0, dot));
}

bool clsHostTags::IsOfReport(std::wstring_view tag, std::wstring_view rest) {
    if (tag.size() < tagWidth || known_.contains(tag))
        return true;
    if (SeverityOf(rest) == Severity::none && !rest.starts_with(L"Util"))
        return false;
    Learn(tag);
    return true;
}

void clsHostTags::Learn(std::wstring_view tag) {
    if (IsName(tag) && known_.size() < mostKnown)
        known_.emplace(tag);
}

} // namespace tool::logpan
