// Profiles that are deep or long: neither the stack nor the time may grow with their shape.
#include "fixture.h"

#include <algorithm>

namespace prof_test {

namespace {

std::string Repeated(std::string_view text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    while (count-- > 0)
        result += text;
    return result;
}

} // namespace

TEST_F(ProfTool, WalksAMillionNestedLists) {
    constexpr std::size_t depth = 1'000'000;
    Write("deep.prf", "[/]\n{\n" + Repeated("[a]\n{\n", depth) + "x=1\n");
    EXPECT_EQ(MustPrint("check deep.prf"), "deep.prf: good, lists: 1000000, items: 1\n");
    const std::string tree = MustPrint("show deep.prf");
    EXPECT_EQ(std::count(tree.begin(), tree.end(), '\n'), depth + 1);
    EXPECT_TRUE(tree.ends_with(" 999999> [a]\n" + std::string(64, ' ') + "1000000> x=1\n"));
    EXPECT_EQ(MustPrint("show deep.prf --flat"), Repeated("/a", depth) + "/x=1\n");
    MustPrint("convert deep.prf deep.json");
    EXPECT_EQ(MustPrint("diff deep.prf deep.json"), "");
    MustFail("merge deep.prf deep.json", 5, "nested too deep");
    MustFail("set deep.prf y 1", 5, "nested too deep");
    MustPrint("delete deep.prf a --list");
    EXPECT_EQ(MustPrint("show deep.prf"), "");
}

TEST_F(ProfTool, PrintsALongList) {
    constexpr std::size_t count = 300'000;
    Write("long.prf", "[/]\n{\n[List]\n{\n" + Repeated("entry=some value\n", count) + "}\n}\n");
    EXPECT_EQ(MustPrint("items long.prf List"), Repeated("entry=some value\n", count));
    MustPrint("convert long.prf long.json");
    MustPrint("convert long.json again.prf");
    MustPrint("merge long.prf again.prf");
    EXPECT_EQ(Read("long.prf"), Read("again.prf"));
}

TEST_F(ProfTool, ChangesLongLists) {
    constexpr int count = 100'000;
    std::string items;
    for (int at = 0; at < count; ++at)
        items += "a/" + std::to_string(at) + "=1\n";
    Write("long.ini", "[S]\nz=1\n" + items + Repeated("no value\n", count));
    MustPrint("set long.ini S/z 2");
    MustPrint("delete long.ini S/a*");
    EXPECT_EQ(Read("long.ini"), "[S]\nz=2\n" + Repeated("no value\n", count));
    Write("long.prf", "[/]\n{\nz=1\n" + items + "}\n");
    MustPrint("delete long.prf a*");
    EXPECT_EQ(MustPrint("show long.prf"), "z=1\n");
}

} // namespace prof_test
