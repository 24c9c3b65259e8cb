// Pages as prof html2text reads them: cases, what nests and repeats without end, character sets. Random
// pages: fuzz/page_text.cpp.
#include "support/cases.h"
#include "support/page_text.h"

#include "html/charset.h"

#include <gtest/gtest.h>

namespace tvut {
namespace {

using tool::html::Links;
using Text = std::u16string;

Text Repeated(std::u16string_view part, std::size_t length) {
    Text text;
    while (text.size() < length)
        text += part;
    return text;
}

TEST(PageText, Cases) {
    for (const scCaseRow& row : CaseRows("html/page_text", 4)) {
        const Links links = row[0] == u"none"  ? Links::none
                            : row[0] == u"end" ? Links::numbered
                                               : Links::inLine;
        EXPECT_EQ(PageText(row[2], links, std::stoul(NarrowCase(row[1]))), row[3]) << row.where;
    }
}

// Hours, if any part of a page were looked through again for each other part; gigabytes, if lines were
// indented as deep as lists nest or cells as wide as the widest one.
TEST(PageText, OfHostilePages) {
    const std::size_t length = 300000;
    for (const scCaseRow& part : CaseRows("html/repeated", 1)) {
        const Text page = Repeated(part[0], length);
        const Text text = PageText(u"x" + page + u"y", Links::inLine, 40);
        EXPECT_LE(text.size(), 24 * length) << part.where;
        EXPECT_TRUE(text.starts_with(u'x')) << part.where;
    }
}

// A page, and the code page that it is read in: the one that it says, or UTF-8.
TEST(PageText, CharacterSets) {
    for (const scCaseRow& row : CaseRows("html/page_charsets", 2)) {
        std::string page;
        for (const char16_t unit : row[0])
            page += static_cast<char>(unit);
        EXPECT_EQ(tool::html::CharsetOf(page).codePage, std::stoul(NarrowCase(row[1]))) << row.where;
    }
}

} // namespace
} // namespace tvut
