#include "text/html/links.h"

#include "text/find.h"
#include "text/html/crossed_links.h"

#include <algorithm>

namespace tvut {

clsBackwardText::clsBackwardText(std::size_t room)
    : buffer_(std::make_unique_for_overwrite<char16_t[]>(room)), end_(buffer_.get() + room), start_(end_) {}

void clsBackwardText::Put(std::u16string_view text) {
    start_ -= text.size();
    if (text.size() < 64)
        UtilpCopy(start_, text.data(), text.size());
    else
        std::copy(text.begin(), text.end(), start_);
}

namespace {

std::u16string_view Between(const char16_t* start, const char16_t* end) {
    return {start, static_cast<std::size_t>(end - start)};
}

// The last <a with white space behind it that lies wholly before an end.
const char16_t* FindLastStart(const char16_t* text, const char16_t* end) {
    for (const char16_t* stop = end; text != stop;) {
        const char16_t* const found = UtilpFindLast(text, stop, linkStart);
        if (!found)
            return nullptr;
        const char16_t* const behind = found + linkStart.size();
        if (behind != end && UtilpIsPatternBlank(*behind))
            return found;
        stop = found + 1;
    }
    return nullptr;
}

} // namespace

bool UtilpFindLastLink(std::u16string_view text, scLink& link) {
    const char16_t* const start = text.data();
    link.labelEnd = UtilpFindLast(start, start + text.size(), linkEnd);
    if (!link.labelEnd)
        return false;
    const char16_t* const tagEnd = UtilpFindLast(start, link.labelEnd, u'>');
    if (!tagEnd)
        return false;
    link.label = tagEnd + 1;
    link.addressEnd = UtilpFindLast(start, tagEnd, u'"');
    if (!link.addressEnd)
        return false;
    const char16_t* const attribute = UtilpFindLast(start, link.addressEnd, linkAddress);
    if (!attribute)
        return false;
    link.address = attribute + linkAddress.size();
    link.start = FindLastStart(start, attribute);
    return link.start != nullptr;
}

void UtilpResolveLinks(std::u16string_view text, scLink link, clsBackwardText& result) {
    do {
        if (link.Address().find(linkEnd) != std::u16string_view::npos) {
            clsCrossedLinks(text).Resolve(result);
            return;
        }
        result.Put(Between(link.labelEnd + linkEnd.size(), text.data() + text.size()));
        result.Put(u"]");
        result.Put(link.Address());
        result.Put(u" [");
        result.Put(link.Label());
        text = Between(text.data(), link.start);
    } while (UtilpFindLastLink(text, link));
    result.Put(text);
}

} // namespace tvut
