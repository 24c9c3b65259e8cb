// The XML and XFDF forms: bytes written, every message and its line, texts that come back, other readers.
#include "support/cases.h"
#include "text/encoding/utf8.h"
#include "unit/native_platform.h"
#include "unit/whole_file.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace tvut;
using namespace std::literals;

namespace {

constexpr std::uint32_t xmlForm = 1;
constexpr std::uint32_t xfdfForm = 2;

const std::string xmlLine = "<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\n";
const std::string xfdfLine = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// TVUT22_REWRITE_GOLDENS=1 in the environment writes them anew.
TEST(Goldens, AreWrittenToTheByte) {
    int pairs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TVUT22_TEST_DATA "/forms")) {
        if (entry.path().extension() != ".prf")
            continue;
        clsTree tree(true);
        ASSERT_TRUE(Load(tree, ReadFile(entry.path())).parsed);
        for (const auto& [form, extension] : {std::pair(xmlForm, ".xml"), std::pair(xfdfForm, ".xfdf")}) {
            auto path = entry.path();
            path.replace_extension(extension);
            if (std::getenv("TVUT22_REWRITE_GOLDENS"))
                std::ofstream(path, std::ios::binary) << Saved(tree, form);
            EXPECT_EQ(ReadFile(path), Saved(tree, form)) << path;
            ++pairs;
        }
    }
    EXPECT_GE(pairs, 4);
}

// Each row's first column, after a beginning, is read as the tree in its second, or refused with the message
// in its second and the line in its third. Blank lines do not count.
void CheckReadings(const char* name, const std::string& beginning = {}, ReadMode mode = ReadMode::detect) {
    for (const scCaseRow& row : CaseRows(std::string("forms/") + name, 2))
        EXPECT_EQ(Read(beginning + NarrowCase(row[0]), mode), row[1]) << row.where;
}

void CheckRefusals(const char* name, const std::string& beginning, ReadMode mode = ReadMode::detect) {
    for (const scCaseRow& row : CaseRows(std::string("forms/") + name, 3))
        EXPECT_EQ(Read(beginning + NarrowCase(row[0]), mode),
                  u"input: error '" + row[1] + u"' in line " + row[2])
            << row.where;
}

TEST(XmlForms, AreReadByTheLine) {
    CheckReadings("detected");
    CheckReadings("xml", xmlLine);
    CheckReadings("xfdf", xfdfLine);
    CheckReadings("foreign_xml", {}, ReadMode::foreignXml);
}

TEST(XmlForms, AreRefusedWithMessageAndLine) {
    CheckRefusals("xml_refused", xmlLine);
    CheckRefusals("xfdf_refused", xfdfLine);
    CheckRefusals("foreign_xfdf_refused", {}, ReadMode::foreignXfdf);
    CheckRefusals("foreign_xml_refused", {}, ReadMode::foreignXml);
}

TEST(XmlForms, SkipWhatTheyDoNotKnowAndSaySo) {
    for (const scCaseRow& row : CaseRows("forms/skipped", 3)) {
        EXPECT_EQ(Read(NarrowCase(row[0])), row[1]) << row.where;
        std::vector<std::u16string> warnings;
        if (row[2] != u"-")
            warnings.push_back(u"WRN: 'input': " + row[2]);
        EXPECT_EQ(DiagnosticLines(), warnings) << row.where;
    }
}

constexpr const char* foreignXfdf = R"(<?xml version='1.0'?><!DOCTYPE x [<!ELEMENT a (b)> ]>
<xfdf xmlns="x"><f href="a>b.pdf"/><!-- <field> --><fields>
<field name = 'a&amp;b'><value>1</value><value>2

 3</value></field><field name="outer">
  <field
     name="inner"><value><![CDATA[<x>&lt;</value>]]>&lt;</values>&#x1F600;</value
 ></field
  ><field name="rich"><value-richtext><p>x</p></value-richtext ><value/></field>
  <field name="deep"><field name="deeper"/></field></field>
<field name="empty"></field><field name="both"><value>v</value><field name="c"><value>w</value></field>
<value>x</value></field></fields>text<ids original="a"/></xfdf>)";

TEST(ForeignXfdf, TurnsNestedFieldsIntoLists) {
    const std::u16string tree =
        u"a&b=1;a&b=2\n\n 3;outer{inner=<x>&lt;</value><</values>\xD83D\xDE00;rich=;deep{deeper=;}}"
        u"empty=;both=v;both{c=w;=x;}";
    EXPECT_EQ(Read(foreignXfdf, ReadMode::foreignXfdf), tree);
    EXPECT_EQ(Read(xmlLine + "<profile>\n<item name=\"a\">1</item>", ReadMode::foreignXfdf), u"a=1;");
    EXPECT_EQ(Read("[/]\na=1", ReadMode::foreignXfdf), u"a=1;");
}

TEST(ForeignXml, GoesWithForeignXfdf) {
    EXPECT_EQ(Read(foreignXfdf, ReadMode::foreignMarkup), Read(foreignXfdf, ReadMode::foreignXfdf));
    EXPECT_EQ(Read(xfdfLine + "<profile><item name='a'/></profile>", ReadMode::foreignMarkup), u"a=;");
    const std::string own = xfdfLine + "<xfdf a='b'>\n<value>1</value>\n</xfdf>";
    EXPECT_EQ(Read(own, ReadMode::foreignXml), u"=1;");
    Read("<profile><a/>\n<b/></profile>", ReadMode::foreignXml);
    EXPECT_EQ(DiagnosticLines().back(), u"WRN: 'input': elements that are not read, from line 1 on");
    EXPECT_EQ(ProfpReadMode(5), ReadMode::foreignMarkup);
    EXPECT_EQ(ProfpReadMode(7), ReadMode::plainIni);
}

// Halves of characters and control characters are in no XML, names of any length in none that is read as
// such.
TEST(ForeignXml, ReadsOwnFilesAsEver) {
    clsTree tree(true);
    tree.AppendItem(tree.Root(), scName(std::u16string(2000000, u'n')), u"\xD83D \xDE00\xFFFF\x01");
    clsItemList* list = &tree.Root();
    for (int level = 0; level != 300; ++level)
        list = tree.AppendList(*list, scName(u"l"));
    const std::string saved = Saved(tree, xmlForm);
    for (std::size_t cut = 0; cut <= saved.size() / 2; cut += cut < 1000 ? 1 : 49999) {
        clsTree again(true), plain(true);
        const std::string bytes = saved.substr(0, 2 * cut);
        EXPECT_EQ(Load(again, bytes, ReadMode::foreignXml).parsed, Load(plain, bytes).parsed) << cut;
        EXPECT_TRUE(Saved(again) == Saved(plain)) << cut;
    }
}

TEST(XmlForm, ShowsZeros) {
    EXPECT_EQ(
        Read("\xFF\xFE"s + Utf16Bytes(u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\r\n"
                                      u"<profile>\r\n<item name=\"\0\">\0&#0;</item>"sv)),
        u"\u2400=\u2400\u2400;");
}

// In UTF-16, which is read a window at a time; trees of all kinds: fuzz/round_trip.cpp.
TEST(ForeignXfdf, ComesBack) {
    clsTree tree(true), wide(true);
    tree.AppendItem(tree.Root(), scName(u"lines"), std::u16string(100000, u'\n') + u"\r\n \r\n\tx");
    tree.AppendItem(tree.Root(), scName(u"\xD83D\xDE00 "), std::u16string(70000, u'x') + u"\xD83D\xDE00");
    const std::string saved = Saved(tree, xfdfForm);
    std::u16string units(saved.size(), u'\0');
    units.resize(UtilpDecodeUtf8(saved, units.data()));
    EXPECT_TRUE(Load(wide, "\xFF\xFE" + Utf16Bytes(units), ReadMode::foreignXfdf).parsed);
    EXPECT_TRUE(Saved(wide) == Saved(tree));
}

TEST(XfdfForm, WritesAHalfOfACharacterAsReplacement) {
    clsTree tree(true);
    tree.AppendItem(tree.Root(), scName(u"a"), u"\xD83D-\xDE00\xD83D"sv);
    EXPECT_NE(Saved(tree, xfdfForm).find("<value>\uFFFD-\uFFFD\uFFFD</value>"), std::string::npos);
    std::u16string text; // a long one is converted in pieces, whose ends lie anywhere among these
    std::string written;
    for (int i = 0; i < 10000; ++i) {
        text += u"\xD83D\xD83D\xDE00";
        written += "\uFFFD\U0001F600";
    }
    tree.AppendItem(tree.Root(), scName(u"b"), text);
    EXPECT_NE(Saved(tree, xfdfForm).find("<value>" + written + "</value>"), std::string::npos);
}

TEST(XmlForms, NestAMillionDeep) {
    std::string xml = xmlLine + "<profile>\n";
    std::string xfdf = xfdfLine + "<xfdf a><fields>\n";
    for (int i = 0; i < 1000000; ++i) {
        xml += "<list name=\"a\">\n";
        xfdf += "<field name=\"a\">\n";
    }
    for (const std::string& bytes : {xml, xfdf}) {
        clsTree tree(true);
        EXPECT_TRUE(Load(tree, bytes, ReadMode::foreignXfdf).parsed);
        EXPECT_EQ(Saved(tree, xmlForm), "cannot be saved");
        EXPECT_EQ(Saved(tree, xfdfForm), "cannot be saved");
        clsMemorySink sink; // measured when some of it is written
        sink.usesLength = false;
        EXPECT_FALSE(ProfpSave(tree.Root(), xmlForm, false, sink));
        EXPECT_LT(sink.bytes.size(), std::size_t{20'000'000});
    }
}

} // namespace
