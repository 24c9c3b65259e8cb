// Looks for the parts of a link from the right, each as the last one before the part found last, which is
// where the greedy groups of the pattern in links.h put them.
#include "text/html/links.h"

#include "text/find.h"
#include "text/html/crossed_links.h"
#include "text/html/link_marks.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tvut {

namespace {

std::u16string_view Between(const char16_t* start, const char16_t* end) {
    return {start, static_cast<std::size_t>(end - start)};
}

// The last href=" of a text: quotation marks are rarer than what may begin it.
const char16_t* FindLastAddress(const char16_t* text, const char16_t* end) {
    constexpr std::ptrdiff_t before = linkAddress.size() - 1;
    const char16_t* const quote =
        UtilpFindLastOf(text, end, {linkAddress.back()}, [=](const char16_t* place) {
            return place - text >= before && UtilpEqual({place - before, linkAddress.size()}, linkAddress);
        });
    return quote ? quote - before : nullptr;
}

// The last <a of a text that white space follows.
const char16_t* FindLastStart(const char16_t* text, const char16_t* end) {
    return UtilpFindLastOf(text, end, {linkStart.front()}, [=](const char16_t* place) {
        return end - place > 2 && place[1] == linkStart.back() && UtilpIsPatternBlank(place[2]);
    });
}

// A link's label and address change places. In one memory, what is put first may hit the label.
void PutLink(const scLink& link, clsBackwardText& result) {
    std::u16string kept;
    std::u16string_view label = link.Label();
    const std::size_t first = beforeAddress.size() + link.Address().size() + afterAddress.size();
    if (link.labelEnd > result.Start() - first && link.label < result.Start())
        label = kept = label;
    result.Put(afterAddress);
    result.Put(link.Address());
    result.Put(beforeAddress);
    result.Put(label);
}

// Whether writing as much as a text has would hit the text.
bool Hits(std::u16string_view text, const clsBackwardText& result) {
    const auto start = reinterpret_cast<std::uintptr_t>(result.Start()) - text.size() * sizeof(char16_t);
    const auto first = reinterpret_cast<std::uintptr_t>(text.data());
    return start < first + text.size() * sizeof(char16_t) &&
           first < reinterpret_cast<std::uintptr_t>(result.Start());
}

// Its rounds read the text again after they have written, so that needs a place of its own.
void ResolveCrossed(std::u16string_view text, clsBackwardText& result) {
    if (!Hits(text, result))
        return clsCrossedLinks(text).Resolve(result);
    const auto buffer = std::make_unique_for_overwrite<char16_t[]>(text.size());
    clsBackwardText resolved(buffer.get() + text.size());
    clsCrossedLinks(text).Resolve(resolved);
    result.Put(resolved.View());
}

} // namespace

bool UtilpFindLastLink(std::u16string_view text, scLink& link) {
    const char16_t* const end = UtilpFindLast(text.data(), text.data() + text.size(), linkEnd);
    return end && UtilpFindLinkBefore(Between(text.data(), end), link);
}

bool UtilpFindLinkBefore(std::u16string_view text, scLink& link) {
    const char16_t* const start = text.data();
    link.labelEnd = start + text.size();
    const char16_t* const tagEnd = UtilpFindLast(start, link.labelEnd, u'>');
    if (!tagEnd)
        return false;
    link.label = tagEnd + 1;
    link.addressEnd = UtilpFindLast(start, tagEnd, u'"');
    if (!link.addressEnd)
        return false;
    const char16_t* const attribute = FindLastAddress(start, link.addressEnd);
    if (!attribute)
        return false;
    link.address = attribute + linkAddress.size();
    link.start = FindLastStart(start, attribute);
    return link.start != nullptr;
}

void UtilpResolveLinks(std::u16string_view text, scLink link, clsBackwardText& result) {
    do {
        if (link.Address().find(linkEnd) != std::u16string_view::npos)
            return ResolveCrossed(text, result);
        result.Put(Between(link.labelEnd + linkEnd.size(), text.data() + text.size()));
        PutLink(link, result);
        text = Between(text.data(), link.start);
    } while (UtilpFindLastLink(text, link));
    result.Put(text);
}

} // namespace tvut
