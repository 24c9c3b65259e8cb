// Any text both ways: results fit what was measured, masking can be undone, and links are those that the
// pattern finds.
#include "require.h"

#include "text/html/html.h"
#include "text/html/links.h"
#include "text/regex/regex.h"

#include <string>

using namespace tvut;

namespace {

void CheckMasking(const std::u16string& text) {
    std::u16string masked(UtilpMaskedLength(text), u'#'), back(masked.size(), u'#');
    UtilpMask(text, masked);
    back.resize(UtilpDemask(masked, back.data()));
    Require(back == text);
    std::u16string inPlace = text;
    const std::size_t length = UtilpDemask(inPlace, inPlace.data());
    std::u16string apart(text.size(), u'#');
    apart.resize(UtilpDemask(text, apart.data()));
    Require(apart == inPlace.substr(0, length));
}

void CheckParagraphs(const std::u16string& text, HtmlForm form) {
    std::u16string html(UtilpHtmlLength(text, form), u'#');
    UtilpTextToHtml(text, form, html);
    Require(html.ends_with(form == HtmlForm::tags ? u"</p>" : u"[_[/p]_]"));
    for (const std::u16string& page : {html, text}) {
        std::u16string plain(page.size(), u'#');
        Require(UtilpHtmlToPlainText(page, form, plain.data()) <= page.size());
    }
}

std::u16string Plain(const std::u16string& page, HtmlForm form) {
    std::u16string plain(page.size(), u'#');
    plain.resize(UtilpHtmlToPlainText(page, form, plain.data()));
    return plain;
}

// What stands before and after a page changes nothing in it, although marks are found for many units at once,
// from another unit on then, and not in the last ones of a text.
void CheckSurroundings(const std::u16string& page, HtmlForm form) {
    const std::u16string plain = Plain(page, form);
    if (Plain(page + u"|", form) != plain + u"|")
        return; // it ends in a tag, or where nothing is shown
    const std::u16string before(1 + page.size() % 31, u'x'), after = u"|" + std::u16string(100, u'y');
    Require(Plain(before + page + after, form) == before + plain + after);
}

// Throws clsRegExTooComplex where the pattern, tried as it stands, takes too many steps.
void CheckLinks(std::u16string text) {
    static const clsRegEx pattern(u"(?s)^(.*)<a\\s+(.*)href=\"(.*)\"(.*)>(.*)</a>(.*)$");
    scLink link;
    std::u16string resolved = text;
    if (UtilpFindLastLink(resolved, link)) {
        clsBackwardText result(resolved.data() + resolved.size());
        UtilpResolveLinks(resolved, link, result);
        resolved = result.View();
    }
    clsRegExMatchList match;
    while (pattern.Match(text, match)) {
        std::u16string next(match.Text(1));
        next.append(match.Text(5)).append(u" [").append(match.Text(3)).append(u"]").append(match.Text(6));
        text = next;
    }
    Require(text == resolved);
}

} // namespace

// Some bytes stand for what pages are made of, so that links are found soon.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::u16string_view parts[] = {u"<a ",
                                             u"href=\"",
                                             u"</a>",
                                             u"\">",
                                             u"<!--",
                                             u"-->",
                                             u"<script>",
                                             u"</script>",
                                             u"&nbsp;",
                                             u"&#x",
                                             u"</p>",
                                             u"[_[",
                                             u"]_]",
                                             u"<li>",
                                             u"<br >",
                                             u"</td>",
                                             u"<b>",
                                             u"&amp;",
                                             u"[_[/li]_]",
                                             u"\r\n  ",
                                             u"text as long as it is read at once, ",
                                             u"<td class=\"a class as long as this one\">"};
    std::u16string text;
    for (std::size_t at = 0; at < size; ++at) {
        if (data[at] >= 0x80 && data[at] < 0xA0)
            text += parts[(data[at] - 0x80) % std::size(parts)];
        else if (data[at] != 0)
            text += data[at];
    }
    CheckMasking(text);
    for (const HtmlForm form : {HtmlForm::tags, HtmlForm::markers}) {
        CheckParagraphs(text, form);
        CheckSurroundings(text, form);
    }
    if (text.size() >= 2000) // the pattern's cost grows with the square, or faster
        return 0;
    try {
        CheckLinks(text);
    } catch (const clsRegExTooComplex&) { // there is nothing to compare with
    }
    return 0;
}
