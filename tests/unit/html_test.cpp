// The HTML conversions: cases, pages, every unit at every place. Links of any text: fuzz/html.cpp.
#include "support/cases.h"
#include "text/encoding/utf8.h"
#include "text/html/html.h"
#include "text/html/links.h"
#include "unit/whole_file.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tvut {
namespace {

using Text = std::u16string;

Text Masked(std::u16string_view text) {
    Text result(UtilpMaskedLength(text), u'#');
    UtilpMask(text, result);
    return result;
}
Text Demasked(std::u16string_view text) {
    Text result(text.size(), u'#');
    result.resize(UtilpDemask(text, result.data()));
    return result;
}
Text Html(std::u16string_view text, HtmlForm form = HtmlForm::tags) {
    Text result(UtilpHtmlLength(text, form), u'#');
    UtilpTextToHtml(text, form, result);
    return result;
}
Text Plain(std::u16string_view html, HtmlForm form = HtmlForm::tags) {
    Text result(html.size(), u'#');
    result.resize(UtilpHtmlToPlainText(html, form, result.data()));
    return result;
}

// In one memory, with no room between what is read and what is written.
Text FastLinks(Text text) {
    scLink link;
    if (!UtilpFindLastLink(text, link))
        return text;
    clsBackwardText result(text.data() + text.size());
    UtilpResolveLinks(text, link, result);
    return Text(result.View());
}

Text Repeated(std::u16string_view part, std::size_t count) {
    Text text;
    while (count-- != 0)
        text += part;
    return text;
}

// Each round moves one label in front of all that the others have moved before: many minutes if it walked
// over what they left.
TEST(HtmlLinks, ThatCrossInALongPage) {
    const std::size_t links = 200000;
    EXPECT_TRUE(FastLinks(Repeated(u"<a href=\"</a>\">", links)) ==
                u"<a href=\"" + Repeated(u" [", links - 1) + u"</a>" + Repeated(u"]", links - 1) + u"\">");
}

// Where a prefix stays as it is, the rest comes out the same at every place of a block.
template <class Convert>
void Check(const char* cases, std::size_t mostBefore, Convert convert) {
    for (const scCaseRow& row : CaseRows(cases, 2)) {
        for (std::size_t before = 0; before <= mostBefore; ++before)
            EXPECT_EQ(convert(Text(before, u'x') + row[0]), Text(before, u'x') + row[1]) << row.where;
    }
}

// Long before the end, up to which blocks are read.
template <class Convert>
auto FarFromEnd(Convert convert) {
    return [=](const Text& text) {
        Text result = convert(text + Text(64, u'.'));
        result.resize(result.size() - 64);
        return result;
    };
}

TEST(Html, Cases) {
    Check("html/masked", 16, Masked);
    Check("html/demasked", 16, Demasked);
    Check("html/masked", 16, FarFromEnd(Masked));
    Check("html/demasked", 32, FarFromEnd(Demasked));
    Check("html/from_text", 0, [](const Text& text) { return Html(text); });
    Check("html/from_text_markers", 0, [](const Text& text) { return Html(text, HtmlForm::markers); });
    Check("html/to_text", 16, [](const Text& html) { return Plain(html); });
    Check("html/to_text_markers", 16, [](const Text& html) { return Plain(html, HtmlForm::markers); });
}

// At every place of a block; masking is undone by demasking, unit by unit.
TEST(HtmlMask, EveryUnitEverywhere) {
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        const std::size_t at = unit % 67;
        Text text(70, u'.');
        text[at] = static_cast<char16_t>(unit);
        const Text one = Masked(text.substr(at, 1));
        ASSERT_EQ(Masked(text), text.substr(0, at) + one + text.substr(at + 1)) << unit;
        ASSERT_EQ(Demasked(Masked(text)), text) << unit;
    }
}

TEST(HtmlToPlainText, UndoesTextToHtml) {
    const Text text = u"\u00ABword\u00BB <&> \u20AC\r\rsecond paragraph";
    EXPECT_EQ(Plain(Html(text)), u"\u00ABword\u00BB <&> \u20AC\r\rsecond paragraph\r");
}

// ---- Pages: name.html becomes name.txt, with line feeds ----

Text ReadUtf8(const std::filesystem::path& path) {
    const std::string bytes = ReadFile(path);
    Text text(bytes.size(), u'\0');
    text.resize(UtilpDecodeUtf8(bytes, text.data()));
    return text;
}

TEST(HtmlToPlainText, Pages) {
    int pages = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TVUT22_TEST_DATA "/html")) {
        std::filesystem::path path = entry.path();
        if (path.extension() != ".html")
            continue;
        Text text = Plain(ReadUtf8(path));
        EXPECT_EQ(text.find(u'\n'), Text::npos) << path;
        std::replace(text.begin(), text.end(), u'\r', u'\n');
        text += text.ends_with(u'\n') ? u"" : u"\n";
        EXPECT_EQ(text, ReadUtf8(path.replace_extension(".txt"))) << path;
        ++pages;
    }
    EXPECT_GE(pages, 12);
}

} // namespace
} // namespace tvut
