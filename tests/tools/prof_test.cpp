// What sessions cannot show: bytes that are no text, other processes, the clipboard, help that is the same.
#include "fixture.h"

#include <algorithm>
#include <random>

namespace prof_test {

using namespace std::string_literals;

namespace {

std::string Utf16(std::u16string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

} // namespace

TEST_F(ProfTool, HelpsWithEveryCommand) {
    EXPECT_NE(MustPrint("--help").find("Exit codes: 0 done, 1 not found"), std::string::npos);
    for (const std::string words : {"help", "/?", "-?", "-h"})
        EXPECT_EQ(MustPrint(words), MustPrint("--help"));
    for (const std::string words : {"help set", "set /?", "set -h"})
        EXPECT_EQ(MustPrint(words), MustPrint("set --help"));
    for (const std::string command : {"show", "get", "set", "delete", "lists", "items", "convert", "check"}) {
        const std::string help = MustPrint(command + " --help");
        EXPECT_NE(help.find("prof " + command), std::string::npos) << help;
        EXPECT_NE(help.find("--ini"), std::string::npos) << help;
    }
}

TEST_F(ProfTool, KnowsAPlainIniFileByItsContentsAlone) {
    const std::pair<std::string, const char*> cases[] = {
        {"\xef\xbb\xbfname=caf\xc3\xa9\n", "/name=caf\xc3\xa9\n"},
        {"name=caf\xe9\n", "/name=caf\xc3\xa9\n"},
        {Utf16(u"\xfeff[S]\r\na=1\r\n"), "/S/a=1\n"},
        {Utf16(u"[S]\r\na=1\r\n"), "/S/a=1\n"}};
    for (const auto& [contents, shown] : cases) {
        const scOutcome piped = Prof("show --flat -", contents);
        EXPECT_EQ(piped.out, shown);
        EXPECT_EQ(piped.err,
                  "prof: standard input: is no profile; read as a plain INI file, as with --ini\n");
    }
}

TEST_F(ProfTool, KeepsTheBytesOfPlainIniFilesThatItChanges) {
    const std::string changes[] = {"set x.ini S/a \xc3\xbc", "delete x.ini b", "set x.ini T/c 1"};
    const auto swapped = [](std::string bytes) {
        for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
            std::swap(bytes[at], bytes[at + 1]);
        return bytes;
    };
    constexpr std::u16string_view before = u"\xfeff"
                                           "b=\xe9\n\xb0=\r\n[S]\ra = \xe4 \n;\xdf",
                                  after = u"\xfeff\xb0=\r\n[S]\ra = \xfc \n;\xdf\n[T]\nc=1";
    const std::pair<std::string, std::string> cases[] = {
        {Utf16(before), Utf16(after)},
        {Utf16(before.substr(1)) + "!", Utf16(after.substr(1)) + "!"},
        {swapped(Utf16(before)), swapped(Utf16(after))},
        {"b=\xe9\n\xb0=\r\n[S]\ra = \xe4 \n;\xdf", "\xb0=\r\n[S]\ra = \xfc \n;\xdf\n[T]\nc=1"},
        {"\xef\xbb\xbf"
         "b=1\n[S]\n",
         "\xef\xbb\xbf[S]\na=\xc3\xbc\n\n[T]\nc=1\n"},
        {"b=1\n[S]\n#\xc3\xa9", "[S]\n#\xc3\xa9\na=\xc3\xbc\n\n[T]\nc=1"}};
    for (const auto& [contents, changed] : cases) {
        Write("x.ini", contents);
        for (const std::string& change : changes)
            MustPrint(change);
        EXPECT_EQ(Read("x.ini"), changed);
    }
    Write("x.ini", "a=\xe9\n");
    MustFail("set x.ini a \xce\xa9", 2, "its code page has not all characters of \xce\xa9");
    MustFail("set x.ini a \xc3\x83\xc2\xa9", 2, "would not read back as it was meant"); // is UTF-8 by chance
    EXPECT_EQ(Read("x.ini"), "a=\xe9\n");
}

TEST_F(ProfTool, CallsNothingAProfileThatIsBinary) {
    for (const std::string& contents : {testing_prof::Noise(10'000), "[S]\na=\0\1\2\3\n"s}) {
        Write("some.prf", contents);
        for (const std::string arguments : {"check -", "convert some.prf out.prf", "set some.prf a 1"})
            MustFail(arguments, 4, "its contents are binary", contents);
    }
    EXPECT_EQ(Read("out.prf"), "");
}

TEST_F(ProfTool, TellsWhatItReadWithDoubt) {
    Write("cut.xml", MustPrint("convert office.prf - --form xml") + Utf16(u"<!-- never closed\r\n"));
    const scOutcome comment = Prof("show cut.xml");
    EXPECT_EQ(comment.out.substr(0, 6), "Title=");
    EXPECT_TRUE(comment.err.starts_with("prof: cut.xml: ") &&
                comment.err.find("comment") != std::string::npos)
        << comment.err;
}

TEST_F(ProfTool, EscapesInShowAndNotInGet) {
    Write("odd.prf", Utf16(u"\xfeff[/]\r\n{\r\n a=\x241b[1m\x241f \x9b \xd83d\xde00 \xd800!\r\n}\r\n"));
    EXPECT_EQ(MustPrint("show odd.prf"), "a=\\x1b[1m\\x1f \\x9b \xF0\x9F\x98\x80 \\ud800!\n");
    EXPECT_EQ(MustPrint("get odd.prf a"), "\x1b[1m\x1f \xc2\x9b \xF0\x9F\x98\x80 \xEF\xBF\xBD!\n");
}

// XML of lists and items whose names and values are random texts, some of them the same.
std::string OddTree(std::mt19937& random) {
    constexpr std::u16string_view units = u"\\\\\\/=*?nrtxu09adf\n\r\t\x1b\x85\xe4\xd83d\xde00 #[";
    const auto text = [&] {
        std::u16string result;
        for (unsigned left = random() % 4; left > 0; --left) {
            const std::string number = std::to_string(static_cast<unsigned>(units[random() % units.size()]));
            result.append(u"&#").append(number.begin(), number.end()).append(u";");
        }
        return result;
    };
    std::u16string xml = u"\xfeff<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\n<profile>\n";
    unsigned depth = 0;
    for (int left = 3000; left > 0; --left) {
        if (depth > 0 && random() % 3 == 0) {
            xml += u"</list>\n";
            --depth;
        } else if (random() % 2 == 0) {
            xml += u"<list name=\"" + text() + u"\">\n";
            ++depth;
        } else {
            xml += u"<item name=\"" + text() + u"\">" + text() + u"</item>\n";
        }
    }
    for (; depth > 0; --depth)
        xml += u"</list>\n";
    return Utf16(xml + u"</profile>\n");
}

TEST_F(ProfTool, ReadsFlatLinesAsItPrintsThem) {
    std::mt19937 random(20);
    Write("odd.xml", OddTree(random));
    MustPrint("convert odd.xml before.xml");
    const std::string lines = MustPrint("show --flat before.xml");
    EXPECT_GT(std::count(lines.begin(), lines.end(), '\n'), 1000);
    MustPrint("convert - after.xml --flat", lines);
    EXPECT_TRUE(Read("after.xml") == Read("before.xml"));
    MustPrint("convert - wide.xml --flat", Utf16(u"\xfeff/a=\xe4\r\n"));
    EXPECT_EQ(MustPrint("show --flat wide.xml"), "/a=\xc3\xa4\n");
}

TEST_F(ProfTool, KeepsTheChangesOfAllWhoChangeAFileAtOnce) {
    for (const std::string target : {"office.prf", "new.prf --create", "new.ini --create"}) {
        std::vector<std::unique_ptr<clsProcess>> others;
        for (int at = 0; at < 6; ++at)
            others.push_back(Start("set " + target + " New/Item" + std::to_string(at) + " 1"));
        for (const auto& other : others) {
            const scOutcome outcome = other->Finish();
            EXPECT_EQ(outcome.code, 0u) << outcome.err;
        }
        const std::string items = MustPrint("items " + target.substr(0, target.find(' ')) + " New");
        EXPECT_EQ(std::count(items.begin(), items.end(), '\n'), 6) << items;
    }
}

TEST_F(ProfTool, LeavesAReadOnlyFileAlone) {
    for (const std::string name : {"office.prf", "editor.ini"}) {
        const std::string before = Read(name);
        SetFileAttributesW(PathOf(name).c_str(), FILE_ATTRIBUTE_READONLY);
        MustFail("set " + name + " Title x", 5, "prof: " + name + ": the file is read-only");
        SetFileAttributesW(PathOf(name).c_str(), FILE_ATTRIBUTE_NORMAL);
        EXPECT_EQ(Read(name), before);
    }
}

TEST_F(ProfTool, CopiesAndPastesOverTheClipboard) {
    GetDesktopWindow(); // starts, under Wine, the process of the desktop: prof's would keep prof's pipes open
    MustPrint("copy office.prf");
    MustPrint("paste pasted.prf");
    EXPECT_EQ(Read("pasted.prf"), Read("office.prf"));
    MustPrint("copy editor.ini");
    EXPECT_EQ(MustPrint("show -", MustPrint("paste -")), MustPrint("show editor.ini"));
    const DWORD deadline = GetTickCount() + 10000; // others may look at what is new on the clipboard
    while (!OpenClipboard(nullptr) && GetTickCount() < deadline)
        Sleep(1);
    EmptyClipboard();
    CloseClipboard();
    MustFail("paste pasted.prf", 1, "prof: clipboard: holds no profile");
    EXPECT_EQ(Read("pasted.prf"), Read("office.prf"));
}

} // namespace prof_test
