// The HTML conversions: cases, and each pass against a plain form of it that is written for clarity.
#include "text/encoding/utf8.h"
#include "text/html/html.h"
#include "text/html/links.h"
#include "text/regex/regex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <span>
#include <vector>

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

// ---- The plain forms ----

struct scRemoval final : IclsRegExGSubCB {
    void Replace(const clsRegExMatchList&, Text&) override {}
};

Text PlainCommentsAndLineEnds(const Text& html) {
    static const clsRegEx comment(u"(?s)<!--.*?-->");
    scRemoval removal;
    Text text, result;
    comment.GSub(html, removal, text);
    for (std::size_t at = 0; at < text.size(); ++at) {
        result += text[at];
        at += text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n';
    }
    return result;
}

Text PlainLinks(Text text) {
    static const clsRegEx link(u"(?s)^(.*)<a\\s+(.*)href=\"(.*)\"(.*)>(.*)</a>(.*)$");
    clsRegExMatchList match;
    while (text.find(u"<a") != Text::npos && link.Match(text, match)) {
        Text next;
        for (const auto part : {match.Text(1), match.Text(5), std::u16string_view(u" ["), match.Text(3),
                                std::u16string_view(u"]"), match.Text(6)})
            next += part;
        text = next;
    }
    return text;
}

Text Lower(Text name) {
    for (char16_t& c : name)
        c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
    return name;
}

const std::map<Text, Text>& Replacements() {
    static const std::map<Text, Text> tags = [] {
        std::map<Text, Text> result;
        for (const char16_t* name : {u"h1", u"h2", u"h3", u"h4", u"h5", u"h6"})
            result[name] = u"", result[Text(u"/") + name] = u"\r";
        for (const char16_t* name :
             {u"div", u"ol", u"tr", u"ul", u"thead", u"tbody", u"blockquote", u"address", u"pre"})
            result[name] = u"", result[Text(u"/") + name] = u"\r";
        result[u"table"] = u"";
        result[u"li"] = u"- ";
        for (const char16_t* name : {u"/p", u"/li", u"br", u"hr"})
            result[name] = u"\r";
        result[u"/td"] = result[u"/th"] = u" ";
        return result;
    }();
    return tags;
}

int SkipOf(const Text& name) {
    for (const char16_t* skipped : {u"head", u"script", u"iframe", u"textarea", u"select", u"style"}) {
        if (name == skipped)
            return 1;
        if (name == Text(u"/") + skipped)
            return -1;
    }
    return 0;
}

Text PlainScan(const Text& html, bool markers) {
    const char16_t opener = markers ? u'[' : u'<', closer = markers ? u']' : u'>';
    const auto isBlank = [](char16_t c) { return Text(u" \r\n\t\u00A0").find(c) != Text::npos; };
    Text result, name;
    bool inside = false, complete = false, blank = false;
    int depth = 0;
    for (std::size_t at = 0; at < html.size(); ++at) {
        const char16_t c = html[at];
        if (!inside && c == opener) {
            inside = true, complete = false, name.clear();
            at += markers && html.compare(at + 1, 2, u"_[") == 0 ? 2 : 0;
        } else if (!inside) {
            if (depth == 0 && !(blank && isBlank(c)))
                result += c != 0xA0 && isBlank(c) ? u' ' : c;
            blank = depth == 0 ? isBlank(c) : blank;
        } else if (c == closer) {
            inside = false;
            at += markers && html.compare(at + 1, 2, u"_]") == 0 ? 2 : 0;
            const auto known = Replacements().find(Lower(name));
            if (depth == 0 && known != Replacements().end())
                result += known->second;
            else
                depth = std::max(depth + SkipOf(Lower(name)), 0);
        } else if (isBlank(c)) {
            complete = true;
        } else if (!complete) {
            name += c;
        }
    }
    return result;
}

Text ReplacedAll(const Text& text, const Text& from, const Text& to) {
    Text result;
    for (std::size_t at = 0; at < text.size();) {
        const bool found = text.compare(at, from.size(), from) == 0;
        result += found ? to : Text(1, text[at]);
        at += found ? from.size() : 1;
    }
    return result;
}

Text PlainFinish(const Text& text) {
    Text result;
    int depth = 0;
    bool blank = false;
    for (const char16_t c : text) {
        if (c == u' ' || c == 0xA0) {
            result += blank ? Text() : Text(1, c);
            blank = true;
        } else if (c == 0xAB) {
            result += depth++ > 0 ? Text(1, c) : Text();
        } else if (c == 0xBB) {
            result += --depth > 0 ? Text(1, c) : Text();
        } else if (c != u'\n') {
            result += c;
            blank = false;
        }
    }
    return ReplacedAll(ReplacedAll(result, u"\r\r\r", u"\r\r"), u"\r\r\r\r", u"\r\r");
}

// ---- Texts made of what matters ----

class clsTexts {
  public:
    explicit clsTexts(std::vector<std::u16string_view> parts) : parts_(std::move(parts)) {}
    Text Next(std::size_t most) {
        Text text;
        for (std::size_t count = random_() % (most + 1); count != 0; --count)
            text += parts_[random_() % parts_.size()];
        return text;
    }

  private:
    std::vector<std::u16string_view> parts_;
    std::mt19937 random_{1};
};

// In one memory, with no room between what is read and what is written.
Text FastLinks(Text text) {
    scLink link;
    if (!UtilpFindLastLink(text, link))
        return text;
    clsBackwardText result(text.data() + text.size());
    UtilpResolveLinks(text, link, result);
    return Text(result.View());
}

TEST(HtmlLinks, AreThoseOfThePattern) {
    clsTexts wild({u"<a ",   u"<a\n", u"<a",    u"<",      u"a ",         u"a",    u"href=\"",
                   u"href=", u"hr",   u"ef=\"", u"\"",     u">",          u"</a>", u"</a>",
                   u"</a",   u" ",    u"x",     u"> </a>", u"<a href=\"", u"\">"});
    clsTexts sane({u"<a href=\"u\">", u"</a>", u"l", u"<a id=\"1\" href=\"", u"\" x>", u"<b>", u"href=\"",
                   u"</a>", u"<a\rhref=\"", u"\"></a>"});
    int changed = 0;
    for (int i = 0; i < 12000; ++i) {
        for (const Text& text : {wild.Next(40), sane.Next(16)}) {
            const Text expected = PlainLinks(text);
            changed += expected != text;
            ASSERT_EQ(FastLinks(text), expected) << "from " << ::testing::PrintToString(text);
        }
    }
    EXPECT_GT(changed, 5000);
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

TEST(HtmlToPlainText, GivesWhatItsStepsGive) {
    clsTexts texts({u"<",
                    u">",
                    u"[",
                    u"]",
                    u"[_[",
                    u"]_]",
                    u"<br>",
                    u"[_[BR]_]",
                    u"<li class=\"x\">",
                    u"</P>",
                    u"</p></p></p>",
                    u"<script>",
                    u"</script>",
                    u"[style]",
                    u"[/style]",
                    u"<head",
                    u"<!--",
                    u"-->",
                    u"--",
                    u"<a href=\"u\">",
                    u"</a>",
                    u" ",
                    u"  ",
                    u"\t",
                    u"\r",
                    u"\n",
                    u"\r\n",
                    u"\u00A0",
                    u"&nbsp;",
                    u"\u00AB",
                    u"\u00BB",
                    u"&laquo;",
                    u"&#10;",
                    u"&#13;",
                    u"&lt;",
                    u"&",
                    u";",
                    u"word",
                    u"longer words",
                    u"/",
                    u"hr"});
    for (int i = 0; i < 12000; ++i) {
        const Text html = texts.Next(30);
        for (const bool markers : {false, true}) {
            const Text linked = PlainLinks(PlainCommentsAndLineEnds(html));
            const Text expected = PlainFinish(Demasked(PlainScan(linked, markers)));
            ASSERT_EQ(Plain(html, markers ? HtmlForm::markers : HtmlForm::tags), expected)
                << "from " << ::testing::PrintToString(html);
        }
    }
}

// ---- Cases ----

struct scCase {
    const char16_t* input;
    const char16_t* expected;
};

template <class Convert>
void Check(std::span<const scCase> cases, Convert convert) {
    for (const scCase& c : cases)
        EXPECT_EQ(convert(c.input), Text(c.expected)) << ::testing::PrintToString(Text(c.input));
}

TEST(HtmlMask, Cases) {
    const scCase cases[] = {{u"", u""},
                            {u"a'b\r\n\x01", u"a'b\r\n\x01"},
                            {u"\t&\"<>", u"&#09;&amp;&quot;&lt;&gt;"},
                            {u"\u0080\u0081\u0085\u009F", u"&euro;&#x0081;&#x0085;&#x009f;"},
                            {u"\u00A0\u00E9\u00FF", u"&nbsp;&eacute;&yuml;"},
                            {u"\u0100\u20AC\U0001F600", u"&#x0100;&#x20ac;&#xd83d;&#xde00;"}};
    Check(cases, [](const char16_t* text) { return Masked(text); });
}

// At every place of a block; masking is undone by demasking, unit by unit.
TEST(HtmlMask, EveryUnitEverywhere) {
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        const std::size_t at = unit % 23;
        Text text(25, u'.');
        text[at] = static_cast<char16_t>(unit);
        const Text one = Masked(text.substr(at, 1));
        ASSERT_EQ(Masked(text), text.substr(0, at) + one + text.substr(at + 1)) << unit;
        ASSERT_EQ(Demasked(Masked(text)), text) << unit;
    }
}

TEST(HtmlDemask, Cases) {
    const scCase cases[] = {{u"", u""},
                            {u"&euro;&apos;&amp;&THORN;", u"\u0080'&\u00DE"},
                            {u"&#x41;&#65;&#x20AC;&#65601;", u"AA\u20ACA"},
                            {u"&#X41;&#0;&#65536;&#;&#x;&#6 5;", u"#X41;#0;#65536;#;#x;#6 5;"},
                            {u"&# 65;&#+65;&#x0x41;&#-1;", u"AAA\uFFFF"},
                            {u"&bogus;&AMP;&;&;;", u"&bogus;&AMP;&;&;;"},
                            {u"&thetasym; & &amp", u"&thetasym; & &amp"},
                            {u"&a&lt;&lt;", u"&a&lt;<"},
                            {u"&&&&&&&&lt;", u"&&&&&&&&lt;"},
                            {u"&amp;lt;", u"&lt;"}};
    Check(cases, [](const char16_t* text) { return Demasked(text); });
}

TEST(HtmlFromText, Cases) {
    const scCase tags[] = {
        {u"", u"<p><br></p>"},
        {u"a\r\nb", u"<p>a</p><p>b</p>"},
        {u"a\r\n\r\nb\r", u"<p>a</p><p><br></p><p>b</p><p><br></p>"},
        {u"\r\r\n\n", u"<p><br></p><p><br></p><p>\n</p>"},
        {u"\u00ABx\u00BB\r\u00AB", u"<p>&laquo;&laquo;x&raquo;&raquo;</p><p>&laquo;&laquo;</p>"},
        {u"<p></p>", u"<p>&lt;p&gt;&lt;/p&gt;</p>"}};
    const scCase markers[] = {{u"", u"[_[p]_][_[/p]_]"}, {u"a\r\n", u"[_[p]_]a[_[/p]_][_[p]_][_[/p]_]"}};
    Check(tags, [](const char16_t* text) { return Html(text); });
    Check(markers, [](const char16_t* text) { return Html(text, HtmlForm::markers); });
}

TEST(HtmlToPlainText, Cases) {
    const scCase tags[] = {{u"", u""},
                           {u"<p>a</p><p>b</p>", u"a\rb\r"},
                           {u"<ul><li>x</li><li>y</li></ul>", u"- x\r- y\r\r"},
                           {u"<SCRIPT>if (a>b)</Script>b", u"b"},
                           {u"</script>still here", u"still here"},
                           {u"a   b \r\n <br> c", u"a b \rc"},
                           {u"<td>a</td><td>b</td>", u"a b "},
                           {u"Go <a href=\"x.htm\">here</a>.", u"Go here [x.htm]."},
                           {u"<a\r\nclass=\"k\"\r\nhref=\"x\"\r\n>two\r\nlines</a>", u"two lines [x]"},
                           {u"<A HREF=\"x\">here</A>, <a name=\"n\">there</a>", u"here, there"},
                           {u"a<!-- 1\r\n2 -->b<!--->c-->d<!--e", u"abd"},
                           {u"&nbsp;&nbsp;x", u"\u00A0x"},
                           {u"</p></p></p></p></p>x</p></p></p></p></p></p></p></p></p>", u"\r\rx\r\r\r\r"},
                           {u"\u00ABa\u00BB \u00AB\u00ABb\u00BB\u00BB", u"a \u00ABb\u00BB"},
                           {u"a<b never closed", u"a"},
                           {u"a<br/>b<p/>c", u"abc"}};
    const scCase markers[] = {{u"[_[p]_]a <b> [x] [/p]b[_[/p]_]", u"a <b> \rb\r"},
                              {u"<a href=\"x\">label</a>", u"label "}};
    Check(tags, [](const char16_t* text) { return Plain(text); });
    Check(markers, [](const char16_t* text) { return Plain(text, HtmlForm::markers); });
}

TEST(HtmlToPlainText, UndoesTextToHtml) {
    const Text text = u"\u00ABword\u00BB <&> \u20AC\r\rsecond paragraph";
    EXPECT_EQ(Plain(Html(text)), u"\u00ABword\u00BB <&> \u20AC\r\rsecond paragraph\r");
}

// ---- Pages: name.html becomes name.txt, with line feeds, as "prof html2text" prints it ----

Text ReadUtf8(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
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
