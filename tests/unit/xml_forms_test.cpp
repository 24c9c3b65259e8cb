// The XML and XFDF forms: bytes written, every message and its line, texts that come back, other readers.
#include "prof/path.h"
#include "prof/tree_walk.h"
#include "text/encoding/utf8.h"
#include "unit/native_platform.h"
#include "unit/random_tree.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

using namespace tvut;
using namespace std::literals;

namespace {

constexpr std::uint32_t xmlForm = 1;
constexpr std::uint32_t xfdfForm = 2;

const std::string xmlLine = "<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\n";
const std::string xfdfLine = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string ReadFile(const std::filesystem::path& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

// name=value; and name{...}, with a text's "\r\n" as it is.
struct scDescription {
    std::u16string text;
    void Item(const clsItem& item, std::uint32_t) {
        text.append(item.Name()).append(u"=").append(item.Value()).append(u";");
    }
    void BeginList(const clsItem& entry, std::uint32_t) { text.append(entry.Name()).append(u"{"); }
    void EndList(std::uint32_t) { text += u"}"; }
};

std::u16string Describe(clsTree& tree) {
    scDescription description;
    ProfpWalk(tree.Root(), 0, description);
    return description.text;
}

// The tree, or what the load's second diagnostic line says of the input.
std::u16string Read(std::string_view bytes, ReadMode mode = ReadMode::detect) {
    DiagnosticLines().clear();
    clsTree tree(true);
    return Load(tree, bytes, mode).parsed ? Describe(tree) : DiagnosticLines().back();
}

std::u16string Refusal(std::u16string_view message, unsigned line) {
    const std::string number = std::to_string(line);
    return u"input: error '" + std::u16string(message) + u"' in line " +
           std::u16string(number.begin(), number.end());
}

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

struct scReading {
    const char* lines;
    const char16_t* tree;
};

TEST(XmlForms, AreToldByTheFirstLine) {
    const scReading readings[] = {
        {" \n\r\t", u""},
        {"<?xml version=\"1.0\"\n<profile>\n<item name=\"a\">1</item>", u"a=1;"},
        {"<?xml version=\"1.0\" encoding=\"UTF-8\n<xfdf x>\n<value>1</value>", u"=1;"},
        {"<!-- by hand -->\n<a>\n[/]\n{\na=1\n}", u"a=1;"}, // what stands before the root counts for nothing
    };
    for (const scReading& reading : readings)
        EXPECT_EQ(Read(reading.lines), reading.tree) << reading.lines;
}

TEST(XmlForm, ReadsLines) {
    const scReading readings[] = {
        {"<profile>\n<item name=\"a\">1</item>\n</profile>", u"a=1;"},
        {"<PROFILE>\n \t<ITEM NAME=\"a\">1</item>\n<LIST name=\"l\">\n</List>\n</pRofile>", u"a=1;l{}"},
        {"<profile>\n<item name=\"\"></item>\n<item  x='' name=\"b\" y>c</item></item>\n</profile>",
         u"=;b=c;"},
        {"<profile>\n<item name=\"a>b\">c<d</item>\n<item name=\"<\">=\"\"</item>", u"a>b=c<d;<==\"\";"},
        {"<profile>\n<item name=\"&lt;&quot;\">&cr;&tab;&amp;lt;&gt;&apos;&#x41;&#66;</item>",
         u"<\"=\r\n\t&lt;>'AB;"},
        {"<profile>\n<item name=\"&nbsp;&;&\">&#;&#x;&#x4g;&#12a;&#x110000;&#x1F600;&#0;</item>",
         u"&nbsp;&;&=&#;&#x;&#x4g;&#12a;\uFFFD\xD83D\xDE00\u2400;"},
        {"<profile>\n<item name=\"a&#x41\">b&#6</item>\n<item name=\"c\">d&#</item>", u"a=b;c=d&#;"},
        {"<profile>\n<item name=\"a&#65 b\">1&#x42;2&#x42 3</item>", u"a=1B2;"},
        {"<!-- a\n<profile>\nb\n--> <profile>\n<!-- c\t--> d\n<!--e\n-->\n<item name=\"a\">1</item>",
         u"a=1;"},
        {"<profile>\n<list name=\"a\">\n<list name=\"b\"/>\n<item name=\"c\">1</item>\n</list>\n</list>\n"
         "<item name=\"d\">2</item>\n</profile>\n<profile>\n<item name=\"e\">3</item>",
         u"a{b{c=1;}}d=2;e=3;"},
        {"<profile>\n<item name=\"a\">1</item>\n</list>\n<profile>\n<other/>\n<itemx\n</profile>", u"a=1;"},
        {"<profile>\n</xfdf>\n<xfdf x>\n<value>1</value>\n</xfdf>\n<profile>\n<item name=\"b\">2</item>",
         u"=1;b=2;"},
        {"<!DOCTYPE a []>\n<profile>\n<!-- <item name=\"a\">1</item> -->\n</profile>", u""},
        {"", u""},
        {"<profile>\n</profile>", u""},
    };
    for (const scReading& reading : readings)
        EXPECT_EQ(Read(xmlLine + reading.lines), reading.tree) << reading.lines;
}

TEST(XfdfForm, ReadsLines) {
    const scReading readings[] = {
        {"<xfdf a>\n<value>1</value>\n<VALUE>2</value></field>\n</xfdf>", u"=1;=2;"},
        {"<xfdf a>\n<field> name=\"a\"\n<value>1</value>\n<field> x NAME=\"b&lt;\" y\n<value>2</value>\n"
         "</field> x\n<value>3</value>\n</field>\n</field>\n<value>4</value>",
         u"a=1;b<=2;a=3;=4;"},
        {"<xfdf a>\n<field name=\"a\">\n<value>1\n \n\t2 </value>\n</field>\n", u"=1\n \n\t2 ;"},
        {"<xfdf a>\n<value>&lt;&cr;</value>\n</xfdf>\n<xfdf b>\n<value>2</value>\n", u"=<\r\n;=2;"},
        {"<xfdf a>\n<field=\"l\">\n</field>\n<other>\n</xfdf>", u""},
        {"", u""},
    };
    for (const scReading& reading : readings)
        EXPECT_EQ(Read(xfdfLine + reading.lines), reading.tree) << reading.lines;
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

struct scMalformed {
    std::string_view input;
    const char16_t* message;
    unsigned line; // blank lines do not count
};

TEST(XmlForm, RefusesWithMessageAndLine) {
    const scMalformed inputs[] = {
        {"<profile>\n\n \t\nx", u"prof::xml: bad format", 3},
        {"<!--\nx\n--> y", u"prof::xml: bad format", 4},
        {"<profile>\r\n\n\r<a>\r<b>\n\r\nx", u"prof::xml: bad format", 5},
        {"<item name=\"a\">1</item>", u"prof::xml::item bad nesting level (becomes negative)", 2},
        {"<profile>\n</profile>\n<item name", u"prof::xml::item bad nesting level (becomes negative)", 4},
        {"<profile>\n<item >1</item>", u"prof::xml::item empty name", 3},
        {"<profile>\n<item name='a'>1</item>", u"prof::xml::item empty name", 3},
        {"<profile>\n<item name=\"a>1</item>", u"prof::xml::item no end tag", 3},
        {"<profile>\n<item name=\"a\"", u"prof::xml::item no end tag (2)", 3},
        {"<profile>\n<item name=\"a\">1", u"prof::xml::item no '</item>' tag found", 3},
        {"<profile>\n<item name=\"a\">1\n2</item>", u"prof::xml::item no '</item>' tag found", 3},
        {"<profile>\n<item name=\"a\">1</ITEM>", u"prof::xml::item no '</item>' tag found", 3},
        {"<profile>\n<item name=\"a\"/>", u"prof::xml::item no '</item>' tag found", 3},
        {"<list name=\"a\">", u"prof::xml::list: bad nesting level", 2},
        {"<profile>\n<list >", u"prof::xml::list: name is empty", 3},
        {"<profile>\n<list name=\"a>", u"prof::xml::list: name is unfinished", 3},
        {"</list>", u"prof::xml::profile: bad nesting level (becomes negative)", 2},
        {"<profile>\n<profile>", u"prof::xml::profile: bad nesting level (should be -1)", 3},
        {"</profile>", u"prof::xml::profile: bad nesting level (should be 0)", 2},
        {"<profile>\n<list name=\"a\">\n</profile>", u"prof::xml::profile: bad nesting level (should be 0)",
         4},
        {"<profile>\n</list>\n</profile>", u"prof::xml::profile: bad nesting level (should be 0)", 4},
        {"<profile>\n<xfdf x>", u"prof::xml::xfdf: bad nesting level (should be -1)", 3},
        {"</xfdf>", u"prof::xml::xfdf: bad nesting level (should be 0)", 2},
        {"<xfdf x>\n<value>1", u"prof::xml::value: bad format (missing next line)", 4},
        {"<xfdf x>\n\ny", u"prof::xml::xfdf: bad format ('<' expected)", 3},
        {"<profile>\n<item\n name=\"a\">", u"prof::xml: bad format", 4},
    };
    for (const scMalformed& input : inputs)
        EXPECT_EQ(Read(xmlLine + std::string(input.input)), Refusal(input.message, input.line))
            << input.input;
}

struct scSkipped {
    std::string input;
    const char16_t* tree;
    const char16_t* warning; // after "WRN: 'input': "; none when null
};

TEST(XmlForms, SkipWhatTheyDoNotKnowAndSaySo) {
    const std::string item = "<item name=\"a\">1</item>";
    const char16_t* const markup = u"markup that is no profile of ours";
    const char16_t* const comment = u"a comment that is not closed, from line 2 on";
    const scSkipped inputs[] = {
        {"<?xml version=\"1.0\"?>\n<profile>\n", u"", markup},
        {"<profile>\nx", u"", markup},
        {" <a>[/]\n[/]x\n[a]\nb=1\n", u"", markup},
        {"<html>\n[/]\na=1", u"a=1;", nullptr},
        {xmlLine + "<profile></profile>", u"", u"elements that are not read, from line 2 on"},
        {xmlLine + "<profile>" + item + "</profile>", u"", u"elements that are not read, from line 2 on"},
        {xmlLine + "<profile>\n<fields>\n</fields>\n" + item, u"a=1;",
         u"elements that are not read, from line 3 on"},
        {xmlLine + "\n<!-- x -->\n<config>\n<a>1</a>\n</config>", u"",
         u"elements that are not read, from line 3 on"},
        {xmlLine + "<!-- x --><profile>\n", u"", u"elements that are not read, from line 2 on"},
        {xmlLine + "<!DOCTYPE profile><profile>\n", u"", u"elements that are not read, from line 2 on"},
        {xmlLine + "<!--x-->\n<profile>\n" + item, u"", comment},
        {xmlLine + "<xfdf x><fields><field name=\"a\"><value>1</value>", u"",
         u"elements that are not read, from line 2 on"},
        {xfdfLine + "<config>\n<a>1</a>\n</config>", u"", u"elements that are not read, from line 2 on"},
        {xfdfLine + "<xfdf x>\n<fields>\n<field name=\"a\"><value>1</value></field>", u"",
         u"elements that are not read, from line 4 on"},
        {xfdfLine + "<xfdf x>\n<field name=\"a\">\n<value>1</value>\n<value>2</value>\n", u"=1;=2;",
         u"values without a name, which PROF_READ_FOREIGN_XFDF reads: 2"},
        {xfdfLine + "<xfdf x>\n</xfdf>", u"", nullptr},
    };
    for (const scSkipped& input : inputs) {
        EXPECT_EQ(Read(input.input), input.tree) << input.input;
        std::vector<std::u16string> warnings;
        if (input.warning)
            warnings.push_back(u"WRN: 'input': " + std::u16string(input.warning));
        EXPECT_EQ(DiagnosticLines(), warnings) << input.input;
    }
}

TEST(XfdfForm, RefusesWithMessageAndLine) {
    const scMalformed inputs[] = {
        {"<xfdf x>\n\n x", u"prof::xml::xfdf: bad format ('<' expected)", 3},
        {"x", u"prof::xml::xfdf: bad format ('<' expected)", 2},
        {"<value>1</value>", u"prof::xml::value: bad format (negative level)", 2},
        {"<xfdf x>\n</xfdf>\n<value>1</value>", u"prof::xml::value: bad format (negative level)", 4},
        {"<xfdf x>\n<value>1\n\n2\n3", u"prof::xml::value: bad format (missing next line)", 6},
        {"<field>name=\"a\"", u"prof::xml::field: bad format (negative level)", 2},
        {"<xfdf x>\n<field>", u"prof::xml::field: no name found", 3},
        {"<xfdf x>\n<value>\n\n\n</value>\n<field> name=\"a", u"prof::xml::field: name unfinished", 5},
        {"</field>", u"prof::xml::field: bad format (negative level)", 2},
        {"<xfdf x>\n<xfdf x>", u"prof::xml::xfdf: bad nesting level (should be -1)", 3},
        {"</xfdf>", u"prof::xml::xfdf: bad nesting level (should be 0)", 2},
    };
    for (const scMalformed& input : inputs)
        EXPECT_EQ(Read(xfdfLine + std::string(input.input)), Refusal(input.message, input.line))
            << input.input;
}

TEST(ForeignXfdf, RefusesWithMessageAndLine) {
    const scMalformed inputs[] = {
        {"<config>", u"prof::xml: bad format", 1},
        {"<xfdf><field name=\"a\"/></field></xfdf>", u"prof::xml::field: bad format (negative level)", 1},
        {"<!-- a -->\n<profile>", u"prof::xml: bad format", 2},
        {"<xfdf>\n<field name=\"a\">\nx", u"prof::xml::xfdf: bad format ('<' expected)", 3},
        {"<xfdf>\n<field>", u"prof::xml::field: no name found", 2},
        {"<xfdf>\n<field name>", u"prof::xml::field: no name found", 2},
        {"<xfdf>\n<field name=a>", u"prof::xml::field: no name found", 2},
        {"<xfdf>\n<field name=\"a>\n", u"prof::xml::field: name unfinished", 2},
        {"<xfdf>\n<field\n\nname=\"a\"\n", u"prof::xml::value: bad format (missing next line)", 4},
        {"<xfdf>\n<value>1</value\n\n2\n", u"prof::xml::value: bad format (missing next line)", 4},
        {"<xfdf>\n</field>", u"prof::xml::field: bad format (negative level)", 2},
        {"<xfdf>\n<value>\n1\n", u"prof::xml::value: bad format (missing next line)", 4},
        {"<xfdf>\n<!--\n1\n", u"prof::xml::value: bad format (missing next line)", 4},
    };
    for (const scMalformed& input : inputs)
        EXPECT_EQ(Read(input.input, ReadMode::foreignXfdf), Refusal(input.message, input.line))
            << input.input;
}

// Line ends come back as CR LF; everything else as it was.
TEST(XmlForm, RoundTripsEveryText) {
    for (unsigned seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE(seed);
        clsTree tree(true), exact(true), again(true), exactAgain(true);
        GrowTree(tree, seed, everyKindOfCharacter);
        GrowTree(exact, seed, u"ab =[]{}#;/<>&'\"\t\x01\x1F\u2400é\u4E00\xD83D\xDE00\uFFFF");
        EXPECT_EQ(Load(again, Saved(tree, xmlForm)).parsed && Saved(again, xmlForm) == Saved(tree, xmlForm),
                  true);
        EXPECT_TRUE(Load(exactAgain, Saved(exact, xmlForm | 0x40)).parsed);
        EXPECT_TRUE(Saved(exactAgain) == Saved(exact));
    }
    EXPECT_EQ(
        Read("\xFF\xFE"s + Utf16Bytes(u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\r\n"
                                      u"<profile>\r\n<item name=\"\0\">\0&#0;</item>"sv)),
        u"\u2400=\u2400\u2400;");
}

// Also in UTF-16, which is read a window at a time.
TEST(ForeignXfdf, RoundTripsWhatNeedsNoEscaping) {
    for (unsigned seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE(seed);
        clsTree tree(true), again(true), wide(true);
        GrowTree(tree, seed, u"ab =[]{}#;/\t\x01\u2400é\u4E00\uFFFF");
        tree.AppendItem(tree.Root(), scName(u"lines"), std::u16string(100000, u'\n') + u"\r\n \r\n\tx");
        tree.AppendItem(tree.Root(), scName(u"\xD83D\xDE00 "), std::u16string(70000, u'x') + u"\xD83D\xDE00");
        const std::string saved = Saved(tree, xfdfForm);
        EXPECT_TRUE(Load(again, saved, ReadMode::foreignXfdf).parsed);
        EXPECT_TRUE(Saved(again) == Saved(tree));
        const std::string text = Saved(again, xfdfForm);
        std::u16string units(saved.size(), u'\0');
        units.resize(UtilpDecodeUtf8(saved, units.data()));
        EXPECT_TRUE(Load(wide, "\xFF\xFE" + Utf16Bytes(units), ReadMode::foreignXfdf).parsed);
        EXPECT_TRUE(Saved(wide) == Saved(tree));
    }
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
    }
}

// What an XML parser of the machine makes of our files; see read_with_expat.py. Control characters and halves
// of characters are no XML however they are written, and a line end in a name is none either.
TEST(XmlForm, IsReadAlikeByAnXmlParser) {
    const auto folder = std::filesystem::temp_directory_path() / "tvut22_xml_forms_test";
    std::filesystem::create_directories(folder);
    for (unsigned seed = 1; seed <= 3; ++seed) {
        clsTree tree(true);
        GrowTree(tree, seed, u"ab =[]{}#;/<>&'\"\u2400é\u4E00\uFF5E");
        tree.AppendItem(tree.Root(), scName(u"&'<>\""), u"\xD83D\xDE00\r\nb\t\r\r\nc\n\n");
        std::ofstream(folder / "tree.xml", std::ios::binary) << Saved(tree, xmlForm);
        const std::string command = "python3 '" TVUT22_TEST_DATA "/../unit/read_with_expat.py' '" +
                                    (folder / "tree.xml").string() + "' '" + (folder / "tree.txt").string() +
                                    "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        std::u16string expected = Describe(tree);
        for (std::size_t at = 0; (at = expected.find(u'\r', at)) != expected.npos;)
            expected.replace(at, expected.substr(at, 2) == u"\r\n" ? 2 : 1, u"\n");
        EXPECT_TRUE(ReadFile(folder / "tree.txt") == Utf16Bytes(expected)) << seed;
    }
    std::filesystem::remove_all(folder);
}

} // namespace
