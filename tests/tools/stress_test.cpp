// Profiles that are deep or long: neither the stack nor the time may grow with their shape.
#include "fixture.h"

#include <algorithm>

namespace prof_test {

namespace {

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    while (count-- > 0)
        result += text;
    return result;
}

} // namespace

TEST_F(ProfTool, WalksAMillionNestedLists) {
    constexpr std::size_t depth = 1'000'000;
    write("deep.prf", "[/]\n{\n" + repeated("[a]\n{\n", depth) + "x=1\n");
    EXPECT_EQ(mustPrint("check deep.prf"), "deep.prf: good, lists: 1000000, items: 1\n");
    const std::string tree = mustPrint("show deep.prf");
    EXPECT_EQ(std::count(tree.begin(), tree.end(), '\n'), depth + 1);
    EXPECT_TRUE(tree.ends_with(" 999999> [a]\n" + std::string(64, ' ') + "1000000> x=1\n"));
    EXPECT_EQ(mustPrint("show deep.prf --flat"), repeated("/a", depth) + "/x=1\n");
    mustFail("set deep.prf y 1", 5, "nested too deep");
    mustPrint("delete deep.prf a --list");
    EXPECT_EQ(mustPrint("show deep.prf"), "");
}

TEST_F(ProfTool, PrintsALongList) {
    constexpr std::size_t count = 300'000;
    write("long.prf", "[/]\n{\n[List]\n{\n" + repeated("entry=some value\n", count) + "}\n}\n");
    EXPECT_EQ(mustPrint("items long.prf List"), repeated("entry=some value\n", count));
}

} // namespace prof_test
