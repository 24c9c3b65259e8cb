// Files into a profile and out of it, and profiles over the clipboard, from the command line.
#include "fixture.h"

namespace prof_test {

TEST_F(ProfTool, AttachesAndExtractsFiles) {
    const std::string bytes(100000, '\x81');
    write("one.bin", bytes);
    write("two.bin", "");
    write("a b.txt", "text");
    mustPrint("attach office.prf Files/In *.bin \"a b.txt\" --key secret");
    mustPrint("attach new.prf / one.bin --create");
    EXPECT_EQ(mustPrint("lists office.prf Files/In"), "File.Entry\nFile.Entry\nFile.Entry\n");
    EXPECT_EQ(mustPrint("get office.prf Files/In/File.Entry/Name"), "one.bin\n");
    mustPrint("extract office.prf Files/In out --key secret");
    mustPrint("extract new.prf / all");
    EXPECT_TRUE(read("out/one.bin") == bytes);
    EXPECT_EQ(read("out/two.bin"), "");
    EXPECT_EQ(read("out/a b.txt"), "text");
    EXPECT_TRUE(read("all/one.bin") == bytes);
    mustFail("extract office.prf Files/In bad --key wrong", 5, "cannot be extracted: one.bin, a b.txt (");
    EXPECT_TRUE(std::filesystem::exists(pathOf("bad/two.bin"))) << "an empty file has nothing to decipher";
    EXPECT_FALSE(std::filesystem::exists(pathOf("bad/one.bin")));
}

TEST_F(ProfTool, AttachesAndExtractsNothingWithoutSayingSo) {
    const std::string before = read("office.prf");
    mustFail("attach office.prf Files missing.bin", 1, "prof: missing.bin: no such file");
    mustFail("attach office.prf Files notes.txt *.none", 1, "prof: *.none: no such file");
    mustFail("attach missing.prf Files notes.txt", 3, "no such file");
    mustFail("attach office.prf Files", 2, "PATTERN is required");
    mustFail("extract office.prf Print out", 1, "there are no files in Print");
    mustFail("extract office.prf None out", 1, "there is no list None");
    EXPECT_EQ(read("office.prf"), before);
    write("evil.prf", "[/]\n{\n[File.Entry]\n{\nName=..\\evil.txt\nContents=YQ==\n}\n"
                      "[File.Entry]\n{\nName=good.txt\nContents=Yg==\n}\n}\n");
    mustFail("extract evil.prf / out", 5, "cannot be extracted: ..\\evil.txt (");
    EXPECT_EQ(read("out/good.txt"), "b");
    EXPECT_FALSE(std::filesystem::exists(pathOf("evil.txt")));
}

TEST_F(ProfTool, CopiesAndPastesOverTheClipboard) {
    GetDesktopWindow(); // starts, under Wine, the process of the desktop: prof's would keep prof's pipes open
    mustPrint("copy office.prf");
    mustPrint("paste pasted.prf");
    EXPECT_EQ(read("pasted.prf"), read("office.prf"));
    mustPrint("copy editor.ini");
    EXPECT_EQ(mustPrint("show -", mustPrint("paste -")), mustPrint("show editor.ini"));
    const DWORD deadline = GetTickCount() + 10000; // others may look at what is new on the clipboard
    while (!OpenClipboard(nullptr) && GetTickCount() < deadline)
        Sleep(1);
    EmptyClipboard();
    CloseClipboard();
    mustFail("paste pasted.prf", 1, "prof: clipboard: holds no profile");
    EXPECT_EQ(read("pasted.prf"), read("office.prf"));
}

} // namespace prof_test
