// Any profile comes back from JSON as it was. The XML form holds any name; the text form any line end.
#include "fixture.h"

#include <random>

namespace prof_test {

namespace {

std::wstring Text(std::mt19937& random) {
    constexpr std::wstring_view alphabet =
        L"ab /=[]{}#\\\"'<>&:,\r\n\t\x01\x7f\xe9\x2400\xd83d\xde00\xfeff\xffff";
    constexpr std::wstring_view values[] = {
        L"",     L"0",     L"-0",   L"-17",  L"007",  L"9007199254740992", L"1.500000", L"1.5", L"1e5",
        L"TRUE", L"FALSE", L"true", L"null", L"(1,2)"};
    if (random() % 3 == 0)
        return std::wstring{values[random() % std::size(values)]};
    std::wstring text;
    for (std::size_t length = random() % 6; length != 0; --length)
        text += alphabet[random() % alphabet.size()];
    return text;
}

std::wstring Quoted(const std::wstring& text) {
    std::wstring result;
    for (const wchar_t unit : text)
        result += L"&#" + std::to_wstring(static_cast<unsigned>(unit)) + L";";
    return result;
}

// Names are few, so that many meet, next to each other and apart.
std::string RandomProfile(unsigned seed) {
    std::mt19937 random{seed};
    std::vector<std::wstring> names;
    for (int count = 0; count != 6; ++count)
        names.push_back(Quoted(Text(random)));
    std::wstring xml = L"\xfeff<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\n<profile>\n";
    std::size_t depth = 0;
    for (int count = 0; count != 3000; ++count) {
        const std::wstring& name = names[random() % names.size()];
        const unsigned choice = random() % 8;
        if (choice == 0 && depth != 0) {
            xml += L"</list>\n";
            --depth;
        } else if (choice == 1) {
            xml += L"<list name=\"" + name + L"\">\n";
            ++depth;
        } else {
            xml += L"<item name=\"" + name + L"\">" + Quoted(Text(random)) + L"</item>\n";
        }
    }
    return {reinterpret_cast<const char*>(xml.data()), xml.size() * sizeof(wchar_t)};
}

} // namespace

TEST_F(ProfTool, BringsProfilesBackFromJson) {
    for (const unsigned seed : {1u, 2u, 3u}) {
        Write("any.xml", RandomProfile(seed));
        MustPrint(seed == 1 ? "convert any.xml any.json --strings" : "convert any.xml any.json");
        for (const std::string form : {"xml", "text"}) {
            MustPrint("convert any.xml one --form " + form);
            MustPrint("convert any.json two --form " + form);
            EXPECT_EQ(Read("one"), Read("two")) << seed << form;
            std::filesystem::remove(PathOf("one"));
            std::filesystem::remove(PathOf("two"));
        }
        EXPECT_EQ(MustPrint("diff any.xml any.json"), "");
        std::filesystem::remove(PathOf("any.json"));
    }
}

} // namespace prof_test
