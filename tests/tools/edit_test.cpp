// What prof changes and saves, and what it refuses to touch.
#include "fixture.h"

#include <algorithm>

namespace prof_test {

namespace {

struct Stored {
    const char* type;
    const char* value;
    const char* text; // what the file then holds
};

struct Typed {
    const char* type;
    const char* value;
};

struct Refused {
    const char* arguments;
    DWORD code;
    const char* reason;
};

// clang-format off
constexpr Stored stored[] = {
    {"string", "\"two words\"", "two words"}, {"string", "\"\"", ""}, {"string", "[a]", "[a]"},
    {"string", "/Print/Copies", "/Print/Copies"}, {"string", "*.prf", "*.prf"}, {"string", "show", "show"},
    {"string", "Füße=größer", "Füße=größer"}, {"bool", "yes", "TRUE"}, {"bool", "OFF", "FALSE"},
    {"int", "-5", "-5"}, {"int", "2147483647", "2147483647"}, {"int", "0xffffffff", "-1"},
    {"inthex", "255", "x000000FF"}, {"inthex", "-1", "xFFFFFFFF"}, {"inthex", "4294967295", "xFFFFFFFF"},
    {"int64", "-9223372036854775808", "9223372036854775808"},
    {"int64", "18446744073709551615", "18446744073709551615"}, {"int64hex", "x1fffffffff", "x1FFFFFFFFF"},
    {"double", "-2.5e3", "-2500.000000"}, {"point", "\"( 3, -4 )\"", "(3,-4)"}, {"point", "3,4", "(3,4)"},
    {"rect", "(1,2,30,40)", "(1,2,30,40)"}, {"rectltwh", "(10,20,30,40)", "(10,20,30,40)"},
    {"colorref", "(255,128,0)", "(255,128,0)"}, {"colorref", "x0080ff", "(255,128,0)"},
};

constexpr Typed notOfTheType[] = {
    {"bool", "maybe"}, {"int", "2147483648"}, {"int", "3x"}, {"int", "\"\""}, {"int", "x100000000"},
    {"inthex", "4294967296"}, {"int64", "1e3"}, {"int64", "1.0"}, {"int64hex", "x"}, {"double", "2,5"},
    {"double", "inf"}, {"double", "1e999"}, {"point", "(1,2"}, {"point", "(1,2,3)"}, {"rect", "(1,2,3)"},
    {"rect", "(1,2,3,)"}, {"colorref", "(0,0,256)"}, {"colorref", "x1000000"},
    {"rectltwh", "(2147483647,0,1,1)"},
};

// clang-format on

// None of these may change a file.
constexpr Refused refused[] = {
    {"set missing.prf A/B 1", 3, "prof: missing.prf: no such file"},
    {"set editor.ini Window/Left 50", 2, "prof: editor.ini: a plain INI file would become"},
    {"set server.conf listen/port 80", 2, "--output"},
    {"set new.ini A/B 1 --create", 2, "--output"},
    {"set office.prf Title x --ini", 2, "--output"},
    {"delete editor.ini Window/Left", 2, "--output"},
    {"set notes.txt A/B 1", 4, "prof: notes.txt: is no profile"},
    {"set form.xfdf last 3", 2, "is not a text profile"},
    {"convert split.xml split.xml", 4, "line 15"},
    {"convert office.prf editor.ini", 2, "prof: editor.ini: holds no profile, and would be lost"},
    {"convert editor.ini ./editor.ini", 2, "would be lost"},
    {"convert editor.ini EDITOR.INI", 2, "would be lost"},
    {"convert office.prf form.xfdf", 2, "would be lost"},
    {"set office.prf Title x --output notes.txt", 2, "prof: notes.txt: holds no profile"},
    {"attach office.prf Files notes.txt --output other.xml", 2, "would be lost"},
    {"set damaged.prf A/B 1", 4, "prof: damaged.prf: "},
    {"set office.prf \"\" 1", 2, "the path is empty"},
    {"set office.prf Print/ 1", 2, "name is missing"},
    {"set office.prf Print/#Copies 1", 2, "would not be read again"},
    {"set office.prf Title", 2, "VALUE is required"},
    {"set office.prf Title x --type text", 2, "--type"},
    {"delete office.prf Print/Colour", 1, "there is no item Print/Colour"},
    {"delete office.prf Print", 1, "there is no item Print"},
    {"delete office.prf Title --list", 1, "there is no list Title"},
    {"delete office.prf / --list", 2, "the root list cannot be deleted"},
    {"convert office.prf no-folder/out.prf", 5, "prof: no-folder/out.prf: no such folder"},
    {"convert office.prf out.prf --form json", 2, "--form"},
};

} // namespace

TEST_F(ProfTool, StoresEveryTypeInItsOwnText) {
    for (const Stored& row : stored) {
        const std::string arguments = std::string{"New/Item "} + row.value + " --type " + row.type;
        EXPECT_EQ(mustPrint("set office.prf " + arguments), "");
        EXPECT_EQ(mustPrint("get office.prf New/Item"), std::string{row.text} + "\n") << arguments;
    }
    EXPECT_EQ(mustPrint("items office.prf New"), "Item=(255,128,0)\n");
}

TEST_F(ProfTool, StoresNothingThatIsNotOfTheType) {
    const std::string before = read("office.prf");
    for (const Typed& row : notOfTheType)
        mustFail(std::string{"set office.prf New/Item "} + row.value + " --type " + row.type, 6,
                 std::string{"is not of type "} + row.type);
    EXPECT_EQ(read("office.prf"), before);
}

TEST_F(ProfTool, ChangesNoFileWhenItRefuses) {
    for (const Refused& row : refused)
        mustFail(row.arguments, row.code, row.reason);
    for (const auto& entry : std::filesystem::directory_iterator(PROF_TEST_DATA)) {
        const std::string name = entry.path().filename().string();
        std::ifstream original{entry.path(), std::ios::binary};
        EXPECT_EQ(read(name), (std::string{std::istreambuf_iterator<char>{original}, {}})) << name;
    }
    EXPECT_FALSE(std::filesystem::exists(pathOf("new.ini")));
    EXPECT_FALSE(std::filesystem::exists(pathOf("out.prf")));
}

TEST_F(ProfTool, SetChangesOneItemInItsPlace) {
    const std::string before = mustPrint("show office.prf");
    mustPrint("set office.prf Print/Copies 12");
    std::string expected = before;
    expected.replace(expected.find("Copies=3"), 8, "Copies=12");
    EXPECT_EQ(mustPrint("show office.prf"), expected);
    mustPrint("set office.prf Print/Copies 3");
    std::ifstream original{std::filesystem::path{PROF_TEST_DATA} / "office.prf", std::ios::binary};
    EXPECT_EQ(read("office.prf"), (std::string{std::istreambuf_iterator<char>{original}, {}}));
}

TEST_F(ProfTool, KeepsTheChangesOfAllWhoChangeAFileAtOnce) {
    for (const std::string target : {"office.prf", "new.prf --create"}) {
        std::vector<std::unique_ptr<Process>> others;
        for (int at = 0; at < 6; ++at)
            others.push_back(start("set " + target + " New/Item" + std::to_string(at) + " 1"));
        for (const auto& other : others) {
            const Outcome outcome = other->finish();
            EXPECT_EQ(outcome.code, 0u) << outcome.err;
        }
        const std::string items = mustPrint("items " + target.substr(0, target.find(' ')) + " New");
        EXPECT_EQ(std::count(items.begin(), items.end(), '\n'), 6) << items;
    }
}

TEST_F(ProfTool, TakesValuesThatLookLikeOptionsBehindADoubleDash) {
    mustPrint("set office.prf -- Title --flat");
    EXPECT_EQ(mustPrint("get office.prf Title"), "--flat\n");
}

TEST_F(ProfTool, CreatesAFileOnlyWhenAsked) {
    mustPrint("set über.prf A/B/C 1 --create");
    mustPrint("set über.prf A/B/D 2 --create");
    EXPECT_EQ(mustPrint("show --flat über.prf"), "/A/B/C=1\n/A/B/D=2\n");
}

TEST_F(ProfTool, DeletesThroughEveryListOfAName) {
    mustPrint("delete office.prf Recent/File");
    EXPECT_EQ(mustPrint("show --flat office.prf Recent"), "");
    EXPECT_EQ(mustPrint("lists office.prf"), "Print\nRecent\nRecent\n");
    mustPrint("delete office.prf Recent --list");
    EXPECT_EQ(mustPrint("lists office.prf"), "Print\n");
    mustPrint("delete office.prf /Print/Fonts --list");
    EXPECT_EQ(mustPrint("lists office.prf Print"), "");
    write("two.prf", "[/]\n{\n[A]\n{\nx=1\n}\n[A]\n{\ny=2\n}\n}\n");
    mustFail("get two.prf A/y", 1, "there is no item A/y");
    mustPrint("delete two.prf A/y");
    EXPECT_EQ(mustPrint("show --flat two.prf"), "/A/x=1\n");
}

TEST_F(ProfTool, SavesAPlainIniFileElsewhere) {
    const std::string before = read("editor.ini");
    mustPrint("set editor.ini Window/Left 50 --output editor.prf");
    mustPrint("delete editor.ini Language --output short.prf");
    mustPrint("convert server.conf server.prf");
    EXPECT_EQ(read("editor.ini"), before);
    EXPECT_EQ(mustPrint("get editor.prf Window/Left"), "50\n");
    EXPECT_EQ(mustPrint("items short.prf"), "");
    EXPECT_EQ(mustPrint("show server.prf"), mustPrint("show server.conf"));
}

TEST_F(ProfTool, FiltersFromInputToOutput) {
    const std::string office = read("office.prf");
    EXPECT_EQ(mustPrint("convert - -", office), office);
    EXPECT_EQ(mustPrint("set - Print/Copies 3", office), office);
    const std::string changed = mustPrint("delete - Title", office);
    EXPECT_EQ(mustPrint("items - /", changed), "");
    EXPECT_EQ(mustPrint("lists - /", changed), "Print\nRecent\nRecent\n");
}

TEST_F(ProfTool, KeepsACompressedProfileCompressed) {
    mustPrint("convert office.prf packed.prf --compress");
    EXPECT_TRUE(read("packed.prf").starts_with("ZZmQ"));
    EXPECT_LT(read("packed.prf").size(), read("office.prf").size());
    mustPrint("set packed.prf Print/Copies 4");
    EXPECT_TRUE(read("packed.prf").starts_with("ZZmQ"));
    EXPECT_EQ(mustPrint("get packed.prf Print/Copies"), "4\n");
    mustPrint("convert packed.prf plain.prf");
    mustPrint("set plain.prf Print/Copies 3");
    EXPECT_EQ(read("plain.prf"), read("office.prf"));
}

TEST_F(ProfTool, LeavesAReadOnlyFileAlone) {
    const std::string before = read("office.prf");
    SetFileAttributesW(pathOf("office.prf").c_str(), FILE_ATTRIBUTE_READONLY);
    mustFail("set office.prf Title x", 5, "prof: office.prf: the file is read-only");
    SetFileAttributesW(pathOf("office.prf").c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(read("office.prf"), before);
}

} // namespace prof_test
