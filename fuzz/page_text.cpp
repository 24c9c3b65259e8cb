// Any page as plain text: nothing of the layout's marks is left, the text is bounded by the page, lines are
// broken where no word is lost, a page without markup is itself, and of one without what hides texts every
// text is shown once.
#include "choices.h"
#include "require.h"

#include "html/charset.h"
#include "support/page_text.h"

#include <algorithm>
#include <string>
#include <vector>

using namespace tvut;
using tool::html::Links;

namespace {

constexpr char16_t shown = u'w';

bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == u'\n';
}

std::u16string WithoutBlanks(std::u16string text) {
    std::erase_if(text, IsBlank);
    return text;
}

// What pages are made of; the first ones hide no text, wherever they stand.
constexpr std::u16string_view harmless =
    u"<p>|</p>|<br>|<li>|</li>|<ul>|</ul>|<ol>|</ol>|<table>|</table>|<tr>|<td>|</td>|</tr>|<pre>|</pre>|"
    u"<div>|</div>|<dl>|<dd>|</dl>|<blockquote>|</blockquote>|<sup>|<hr>|<q>|<caption>|<img src=x>|&eacute;|"
    u"\t|\n|<a href='x'>|</a>";
constexpr std::u16string_view others =
    u"<a href=\"|<select>|<option>|<option selected>|</select>|<!--|-->|<title>|<script>|</|<template>|"
    u"</template>|<xmp>|<textarea>|&amp|&#x3042;|\u3042|\u300D|\xD83D\xDE00";

std::vector<std::u16string_view> Parts(std::u16string_view text) {
    std::vector<std::u16string_view> parts;
    for (std::size_t end = 0; end != text.npos; text.remove_prefix(std::min(end, text.size() - 1) + 1))
        parts.push_back(text.substr(0, end = text.find(u'|')));
    return parts;
}

void CheckText(std::u16string_view page, Links links) {
    const std::u16string text = PageText(page, links, 0);
    for (const char16_t unit : text)
        Require(unit == u'\n' || (unit >= u' ' && (unit < 0xFDD0 || unit > 0xFDEF)));
    Require(text.size() <= 1000 + 100 * page.size());
    for (const unsigned width : {10u, 40u})
        Require(WithoutBlanks(PageText(page, links, width)) == WithoutBlanks(text));
}

// The words of a text, each after one blank, from its masked form.
void CheckWords(std::u16string words) {
    std::replace_if(
        words.begin(), words.end(), [](char16_t c) { return c < u' '; }, u' ');
    std::u16string masked(UtilpMaskedLength(words), u'#');
    UtilpMask(words, masked);
    std::u16string folded;
    for (const char16_t unit : words) {
        if (!IsBlank(unit))
            folded += unit;
        else if (!folded.empty() && folded.back() != u' ')
            folded += u' ';
    }
    while (folded.ends_with(u' '))
        folded.pop_back();
    Require(PageText(masked, Links::inLine, 0) == (folded.empty() ? u"" : folded + u"\n"));
}

void CheckNothingIsLost(const std::u16string& page, Links links) {
    const std::u16string text = PageText(page, links, 0);
    Require(std::ranges::count(text, shown) == std::ranges::count(page, shown));
}

} // namespace

// Some bytes stand for what pages are made of.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::size_t harmlessCount = Parts(harmless).size();
    static const std::vector<std::u16string_view> parts = [] {
        std::vector<std::u16string_view> all = Parts(harmless);
        std::ranges::copy(Parts(others), std::back_inserter(all));
        return all;
    }();
    tool::html::CharsetOf({reinterpret_cast<const char*>(data), size});
    clsChoices choices{data, size};
    const auto links = static_cast<Links>(choices.Below(3));
    std::u16string page, words, harmlessPage;
    while (!choices.AtEnd()) {
        const unsigned choice = choices.Below(256);
        const auto unit = static_cast<char16_t>(choice >= 0x80 ? choice + 0x20 : choice);
        words += unit >= 0x7F && unit < 0xA1 ? u'x' : unit;
        const std::size_t part = choice - 0x80u;
        if (part < parts.size())
            page += parts[part];
        else
            page += choice == 0 ? u' ' : static_cast<char16_t>(choice);
        harmlessPage += part < harmlessCount ? parts[part] : std::u16string_view(&shown, 1);
    }
    CheckText(page, links);
    CheckWords(words);
    CheckNothingIsLost(harmlessPage, links);
    return 0;
}
