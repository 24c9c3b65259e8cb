// What prof prints: whole outputs to the byte, and what it says when it has nothing to print.
#include "fixture.h"

#include <algorithm>

namespace prof_test {

using namespace std::string_literals;

namespace {

struct Printed {
    const char* arguments;
    const char* output;
};

struct Refused {
    const char* arguments;
    DWORD code;
    const char* reason;
};

constexpr Printed printed[] = {
    {"show office.prf", "Title=Quarterly report\n"
                        "[Print]\n"
                        "  Copies=3\n"
                        "  Duplex=TRUE\n"
                        "  Paper=(0,0,2100,2970)\n"
                        "  Scale=0.850000\n"
                        "  Accent=(0,102,204)\n"
                        "  Serial=x0000FFFF\n"
                        "  Ticket=18446744073709551615\n"
                        "  Offset=(-4,12)\n"
                        "  Header=Grüße aus Köln\\nSeite\\t%d\n"
                        "  Footer=\n"
                        "  [Fonts]\n"
                        "    Body=Liberation Serif\n"
                        "    Head=DejaVu Sans\n"
                        "[Recent]\n"
                        "  File=C:\\Reports\\2023\\q3.prf\n"
                        "  File=C:\\Reports\\2023\\q4.prf\n"
                        "[Recent]\n"
                        "  File=D:\\Archive\\q1.prf\n"},
    {"show --flat editor.ini", "/Language=de\n"
                               "/Window/Left=40\n"
                               "/Window/Top=60\n"
                               "/Window/Title=Entwürfe - Editor\n"
                               "/Colours/Text=(32,32,32)\n"
                               "/Colours/Paper=\"#fffff0\"   ; ivory\n"
                               "/Recent Files/1=C:\\Texte\\Brief [alt].txt\n"},
    {"show server.conf limits", "body=16M\n"},
    {"show office.prf --flat Print/Fonts", "/Print/Fonts/Body=Liberation Serif\n"
                                           "/Print/Fonts/Head=DejaVu Sans\n"},
    {"lists office.prf", "Print\nRecent\nRecent\n"},
    {"lists office.prf /Print", "Fonts\n"},
    {"items office.prf /", "Title=Quarterly report\n"},
    {"items editor.ini Colours", "Text=(32,32,32)\nPaper=\"#fffff0\"   ; ivory\n"},
    {"check office.prf", "office.prf: good, lists: 4, items: 16\n"},
    {"get office.prf Title", "Quarterly report\n"},
    {"get office.prf /Print/Header", "Grüße aus Köln\nSeite\t%d\n"},
    {"get office.prf Print/Footer", "\n"},
    {"get office.prf Print/Duplex --type bool", "TRUE\n"},
    {"get office.prf Print/Copies --type int", "3\n"},
    {"get office.prf Print/Serial --type int", "65535\n"},
    {"get office.prf Print/Ticket --type int64", "-1\n"},
    {"get office.prf Print/Scale --type double", "0.85\n"},
    {"get office.prf Print/Offset --type point", "(-4,12)\n"},
    {"get office.prf Print/Paper --type rect", "(0,0,2100,2970)\n"},
    {"get --type=rectltwh office.prf Print/Paper", "(0,0,2100,2970)\n"},
    {"get office.prf Print/Accent --type colorref", "(0,102,204)\n"},
    {"get \"editor.ini\" \"Recent Files/1\"", "C:\\Texte\\Brief [alt].txt\n"},
    {"--version", "prof 22.10\n"},
    {"version", "prof 22.10\n"},
};

constexpr Refused refused[] = {
    {"show missing.prf", 3, "prof: missing.prf: no such file"},
    {"show missing.ini", 3, "prof: missing.ini: no such file"},
    {"show .", 3, "prof: .: is a folder"},
    {"show damaged.prf", 4, "prof: damaged.prf: "},
    {"check damaged.prf", 4, "prof: damaged.prf: "},
    {"check split.xml", 4, "prof: split.xml: line 15: prof::xml::item no '</item>' tag found"},
    {"show other.xml", 4, "prof: other.xml: is XML, but no profile: its root element is <settings>"},
    {"check broken.xfdf", 4, "prof: broken.xfdf: line 3: prof::xml::field: name unfinished"},
    {"show office.prf Print/Colours", 1, "prof: office.prf: there is no list Print/Colours"},
    {"lists office.prf Title", 1, "there is no list Title"},
    {"get office.prf Print/Colour", 1, "prof: office.prf: there is no item Print/Colour"},
    {"get office.prf Print", 1, "there is no item Print"},
    {"get office.prf print/Copies", 1, "there is no item print/Copies"},
    {"get office.prf \"\"", 2, "the path is empty"},
    {"get office.prf Title --type int", 6, "prof: office.prf: the value of Title is not of type int"},
    {"get office.prf Print/Footer --type double", 6, "is not of type double"},
    {"get office.prf Print/Copies --type inthex", 2, "--type"},
    {"get office.prf", 2, "PATH is required"},
    {"get office.prf Title more", 2, "prof --help"},
    {"explain office.prf", 2, "prof: unknown command 'explain'\nTry 'prof --help'"},
    {"shwo office.prf", 2, "prof: unknown command 'shwo', did you mean 'show'?"},
    {"Show office.prf", 2, "did you mean 'show'?"},
    {"del office.prf Title", 2, "did you mean 'delete'?"},
    {"help chekc", 2, "unknown command 'chekc', did you mean 'check'?"},
    {"office.prf", 2, "unknown command 'office.prf', did you mean 'prof show office.prf'?"},
    {"", 2, "prof --help"},
};

std::string utf16(std::u16string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

} // namespace

TEST_F(ProfTool, PrintsWhatIsAskedFor) {
    for (const Printed& row : printed)
        EXPECT_EQ(mustPrint(row.arguments), row.output) << row.arguments;
}

TEST_F(ProfTool, SaysWhyItPrintsNothing) {
    for (const Refused& row : refused)
        mustFail(row.arguments, row.code, row.reason);
}

TEST_F(ProfTool, HelpsWithEveryCommand) {
    EXPECT_NE(mustPrint("--help").find("Exit codes: 0 done, 1 not found"), std::string::npos);
    for (const std::string words : {"help", "/?", "-?", "-h"})
        EXPECT_EQ(mustPrint(words), mustPrint("--help"));
    for (const std::string words : {"help set", "set /?", "set -h"})
        EXPECT_EQ(mustPrint(words), mustPrint("set --help"));
    for (const std::string command : {"show", "get", "set", "delete", "lists", "items", "convert", "check"}) {
        const std::string help = mustPrint(command + " --help");
        EXPECT_NE(help.find("prof " + command), std::string::npos) << help;
        EXPECT_NE(help.find("--ini"), std::string::npos) << help;
    }
}

TEST_F(ProfTool, ReadsStandardInput) {
    EXPECT_EQ(mustPrint("show -", read("office.prf")), mustPrint("show office.prf"));
    EXPECT_EQ(mustPrint("show - --ini", read("editor.ini")), mustPrint("show editor.ini"));
    EXPECT_EQ(mustPrint("show -"), "");
}

TEST_F(ProfTool, ConvertsHtml) {
    EXPECT_EQ(mustPrint("html2text", "<p>a &amp; b</p>\r\n<!-- x --><p>\xC3\xA9</p>"), "a & b\n \xC3\xA9\n");
    EXPECT_EQ(mustPrint("html2text --markers", "[_[p]_]<a>[_[/p]_]"), "<a>\n");
    EXPECT_EQ(mustPrint("text2html", "a<b\r\n\n\xE2\x82\xAC\n"), "<p>a&lt;b</p><p><br></p><p>&#x20ac;</p>\n");
    EXPECT_EQ(mustPrint("text2html --markers", ""), "[_[p]_][_[/p]_]\n");
    EXPECT_EQ(mustPrint("html2text", ""), "");
}

TEST_F(ProfTool, KnowsAPlainIniFileByItsNameAndItsContents) {
    write("PLAIN.INI", "[One]\r\na=1\r\n[Two]\r\nb=2\r\n");
    EXPECT_EQ(mustPrint("show --flat PLAIN.INI"), "/One/a=1\n/Two/b=2\n");
    write("store.ini", read("office.prf"));
    EXPECT_EQ(mustPrint("show store.ini"), mustPrint("show office.prf"));
    write("server.txt", read("server.conf"));
    EXPECT_EQ(mustPrint("show --ini server.txt"), mustPrint("show server.conf"));
}

// From a pipe, or under a name that tells nothing.
TEST_F(ProfTool, KnowsAPlainIniFileByItsContentsAlone) {
    struct Case {
        std::string contents;
        const char* shown;
    };
    const Case cases[] = {
        {"; ours\na = 1\n\n[S] ; first\r\nb=2\n[T]\n[U]\nc", "/a=1\n/S/b=2\n/U/c=\n"},
        {"\xef\xbb\xbfname=caf\xc3\xa9\n", "/name=caf\xc3\xa9\n"},
        {"name=caf\xe9\n", "/name=caf\xc3\xa9\n"},
        {utf16(u"\xfeff[S]\r\na=1\r\n"), "/S/a=1\n"},
        {utf16(u"[S]\r\na=1\r\n"), "/S/a=1\n"},
    };
    const std::string note = "is no profile; read as a plain INI file, as with --ini";
    for (const Case& at : cases) {
        write("store.prf", at.contents);
        const Outcome named = prof("show --flat store.prf");
        EXPECT_EQ(named.out, at.shown);
        EXPECT_EQ(named.err, "prof: store.prf: " + note + "\n");
        const Outcome piped = prof("show --flat -", at.contents);
        EXPECT_EQ(piped.out, at.shown);
        EXPECT_EQ(piped.err, "prof: standard input: " + note + "\n");
        EXPECT_EQ(mustPrint("show --flat --ini store.prf"), at.shown);
        mustFail("set store.prf a 2", 2, "prof: store.prf: a plain INI file would become");
        EXPECT_EQ(read("store.prf"), at.contents);
    }
}

TEST_F(ProfTool, TellsWhatItReadWithDoubt) {
    write("named.ini", "key\n[S]\na=1\n");
    std::string cut = mustPrint("convert office.prf - --form xml");
    cut += utf16(u"<!-- never closed\r\n");
    write("cut.xml", cut);
    const Outcome named = prof("show --flat named.ini");
    EXPECT_EQ(named.out, "/key=\n/S/a=1\n");
    EXPECT_EQ(named.err,
              "prof: named.ini: has lines that INI files do not have; read as one because of its name\n");
    const Outcome comment = prof("show cut.xml");
    EXPECT_EQ(comment.out.substr(0, 6), "Title=");
    EXPECT_TRUE(comment.err.starts_with("prof: cut.xml: ") &&
                comment.err.find("comment") != std::string::npos)
        << comment.err;
}

TEST_F(ProfTool, CallsNothingAProfileThatIsNone) {
    struct Case {
        std::string contents;
        const char* reason;
    };
    std::string noise(10'000, '\0');
    std::generate(noise.begin(), noise.end(), [state = 1u]() mutable {
        return static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    });
    const Case cases[] = {
        {noise, "its contents are binary"},
        {"[S]\na=\0\1\2\3\n"s, "its contents are binary"},
        {"Dear all,\n[x] this is a=b\n", "neither a list [/] nor the sections of an INI file"},
        {"[link](page.md)\n[S]\na=1\n", "neither a list [/]"},
        {"{\n \"a\": [1]\n}\n", "neither a list [/]"},
        {"[A]\n{\nx=1\n}\n", "neither a list [/]"},
        {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<!-- a > b -->\n<!DOCTYPE x [ <!ENTITY y \"z\"> "
         "]>\n<x:y/>\n",
         "is XML, but no profile: its root element is <x:y>"},
        {"\xef\xbb\xbf<profile>\n<item name=\"a\">1</item>\n</profile>\n",
         "is XML, but no profile as it is saved here"},
        {utf16(u"\xfeff<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\r\n<profile><item "
               u"name=\"a\">1</item></profile>\r\n"),
         "is XML, but no profile as it is saved here"},
        {"<!doctype HTML>\n<HTML lang=\"en\"><body>a=1\n", "is HTML, but no profile"},
        {"<\n", "is XML, but no profile"},
    };
    for (const Case& at : cases)
        for (const std::string name : {"-", "some.prf", "named.conf"}) {
            if (name == "named.conf" && std::string_view{at.reason}.starts_with("neither"))
                continue; // its name says how to read it
            if (name != "-")
                write(name, at.contents);
            mustFail("check " + name, 4, at.reason, at.contents);
            mustFail("convert " + name + " out.prf", 4, at.reason, at.contents);
            mustFail("set " + name + " a 1", 4, at.reason, at.contents);
        }
    EXPECT_EQ(read("out.prf"), "");
    for (const char* contents : {"", "\r\n \n", "# nothing yet\n"})
        EXPECT_EQ(mustPrint("show -", contents), "");
}

TEST_F(ProfTool, ConvertsBetweenAllForms) {
    std::string shown = mustPrint("show office.prf");
    const std::string lineFeed = "K\xC3\xB6ln\\n";
    ASSERT_NE(shown.find(lineFeed), std::string::npos);
    shown.replace(shown.find(lineFeed), lineFeed.size(), "K\xC3\xB6ln\\r\\n"); // as XML brings line ends back
    mustPrint("convert office.prf office.xml");
    mustPrint("convert office.xml office.XFDF");
    mustPrint("convert office.XFDF again.xml --compress");
    mustPrint("convert again.xml again.prf --form text");
    for (const std::string file : {"office.xml", "office.XFDF", "again.xml", "again.prf"})
        EXPECT_EQ(mustPrint("show " + file), shown) << file;
    EXPECT_EQ(mustPrint("convert again.prf - --form xml"), read("office.xml"));
    EXPECT_EQ(mustPrint("show form.xfdf"), "[outer]\n  inner=1\nlast=2\n");
    mustFail("set office.xml Title x", 2, "is not a text profile");
    mustFail("show missing.xfdf", 3, "prof: missing.xfdf: no such file");
}

TEST_F(ProfTool, EscapesInShowAndNotInGet) {
    write("odd.prf", utf16(u"\xfeff[/]\r\n{\r\n a=\x241b[1m\x241f \x9b \xd83d\xde00 \xd800!\r\n}\r\n"));
    EXPECT_EQ(mustPrint("show odd.prf"), "a=\\x1b[1m\\x1f \\x9b \xF0\x9F\x98\x80 \\ud800!\n");
    EXPECT_EQ(mustPrint("get odd.prf a"), "\x1b[1m\x1f \xc2\x9b \xF0\x9F\x98\x80 \xEF\xBF\xBD!\n");
}

} // namespace prof_test
