// A page as plain text in two passes, of which none makes the text longer: comments and links, then all else.
// Where links are not whole, comments go first and links are resolved from the end.
#include "text/find.h"
#include "text/html/comments.h"
#include "text/html/html.h"
#include "text/html/links.h"
#include "text/html/render.h"
#include "text/html/whole_links.h"

#include <algorithm>

namespace tvut {

namespace {

// The first whole comment of a text; null when there is none.
const char16_t* FindComment(const char16_t* text, const char16_t* end, const char16_t*& after) {
    const char16_t* const start = UtilpFindFirst(text, end, commentStart);
    if (!start)
        return nullptr;
    const char16_t* const close = UtilpFindFirst(start + commentStart.size(), end, commentEnd);
    if (!close)
        return nullptr;
    after = close + commentEnd.size();
    return start;
}

// The page without its comments: itself, or put into the buffer. A CR LF needs no attention, before or
// after: each white space that a tag or the text meets means the same as any other, and so does a row of
// them.
std::u16string_view WithoutComments(std::u16string_view html, char16_t* buffer) {
    const char16_t* next = html.data();
    const char16_t* const end = next + html.size();
    const char16_t* after = nullptr;
    const char16_t* comment = FindComment(next, end, after);
    if (!comment)
        return html;
    char16_t* out = buffer;
    for (; comment; comment = FindComment(next, end, after)) {
        out = std::copy(next, comment, out);
        next = after;
    }
    out = std::copy(next, end, out);
    return {buffer, static_cast<std::size_t>(out - buffer)};
}

} // namespace

std::size_t UtilpHtmlToPlainText(std::u16string_view html, HtmlForm form, char16_t* result) {
    if (const auto resolved = UtilpResolveWholeLinks(html, result))
        return UtilpRenderPage(*resolved, form, result);
    const std::u16string_view text = WithoutComments(html, result);
    scLink link;
    if (!UtilpFindLastLink(text, link))
        return UtilpRenderPage(text, form, result);
    clsBackwardText resolved(result + html.size());
    UtilpResolveLinks(text, link, resolved);
    return UtilpRenderPage(resolved.View(), form, result);
}

} // namespace tvut
