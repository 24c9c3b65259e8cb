// What prof prints: whole outputs to the byte, and what it says when it has nothing to print.
#include "fixture.h"

namespace prof_test {

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
};

constexpr Refused refused[] = {
    {"show missing.prf", 3, "prof: missing.prf: no such file"},
    {"show missing.ini", 3, "prof: missing.ini: no such file"},
    {"show .", 3, "prof: .: is a folder"},
    {"show damaged.prf", 4, "prof: damaged.prf: "},
    {"check damaged.prf", 4, "prof: damaged.prf: "},
    {"check split.xml", 4, "prof: split.xml: line 15: prof::xml::item no '</item>' tag found"},
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
    {"explain office.prf", 2, "prof --help"},
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
