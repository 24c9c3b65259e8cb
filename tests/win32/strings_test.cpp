// The string family: against the C runtime, on buffers that fit exactly, and with the string check.
#include "support/cases.h"
#include "support/copy.h"
#include "support/log.h"
#include "support/page_end.h"

#include <tvut22/text.h>

#include <gtest/gtest.h>

#include <cwchar>
#include <numeric>
#include <random>
#include <string>

namespace testing_prof {
namespace {

using tvut::CaseRows, tvut::NarrowCase, tvut::scCaseRow, tvut::WideCase;

int Sign(int order) {
    return (order > 0) - (order < 0);
}

std::wstring RandomText(std::mt19937& random, size_t length) {
    static constexpr std::wstring_view unitAlphabet = L"aAbB \x00E4\x00C4\x0101\xD800\xFF41\xFFFF@[Zz{";
    std::wstring text(length, L'a');
    for (wchar_t& unit : text)
        if (random() % 8 == 0)
            unit = unitAlphabet[random() % unitAlphabet.size()];
    return text;
}

// Every length, beside a page's end and elsewhere, where both texts are alike up to a random place.
TEST(Strings, AgreeWithTheRuntime) {
    std::mt19937 random(7);
    clsPageEnd pageA, pageB;
    for (size_t length = 0; length <= 70; ++length)
        for (int time = 0; time < 12; ++time) {
            const std::wstring textA = RandomText(random, length);
            std::wstring textB = textA.substr(0, random() % (length + 1));
            textB += RandomText(random, random() % 20);
            const wchar_t* const a = time % 2 ? textA.c_str() : pageA.Text(textA);
            const wchar_t* const b = pageB.Text(textB);
            const UINT count = random() % 80;
            const wchar_t unit = textB.empty() ? L'x' : textB[random() % textB.size()];
            SCOPED_TRACE(testing::PrintToString(textA) + testing::PrintToString(textB));
            ASSERT_EQ(UtilStrlen(a), length);
            ASSERT_EQ(UtilSafeStrlen(5, b), textB.size());
            ASSERT_EQ(UtilStrcmp(a, b), Sign(textA.compare(textB)));
            ASSERT_EQ(Sign(UtilStrncmp(a, b, count)), Sign(std::wcsncmp(a, b, count)));
            ASSERT_EQ(Sign(UtilStricmp(a, b)), Sign(_wcsicmp(a, b)));
            ASSERT_EQ(Sign(UtilStrnicmp(a, b, count)), Sign(_wcsnicmp(a, b, count)));
            ASSERT_EQ(UtilStrchr(a, unit), std::wcschr(a, unit));
            ASSERT_EQ(UtilStrrchr(a, unit), std::wcsrchr(a, unit));
            ASSERT_EQ(UtilStrchr(a, L'\0'), a + length);
            ASSERT_EQ(UtilStrrchr(a, L'\0'), a + length);
            ASSERT_EQ(UtilStrstr(a, L""), a);
            const std::wstring part = textB.substr(0, 1 + random() % 3) + std::wstring(textB.empty(), L'a');
            ASSERT_EQ(UtilStrstr(a, part.c_str()), std::wcsstr(a, part.c_str()));
        }
}

// Odd addresses, too: texts in packed structures.
TEST(Strings, CopyIntoBuffersThatFit) {
    clsPageEnd page, pageOfSource;
    std::mt19937 random(8);
    for (size_t turn = 0; turn <= 141; ++turn) {
        const size_t length = turn / 2;
        const std::wstring text = RandomText(random, length);
        const wchar_t* const source = turn % 2 ? text.c_str() : pageOfSource.Text(text);
        wchar_t* const to = page.LastUnits(length + 1);
        ASSERT_EQ(UtilStrcpy(to, source), to);
        ASSERT_EQ(to, text);
        for (const UINT size : {1u, 2u, static_cast<UINT>(length + 1), 100u}) {
            const size_t kept = std::min<size_t>(size - 1, length);
            wchar_t* const cut = page.LastUnits(kept + 1);
            ASSERT_EQ(UtilStrncpy(cut, source, size), cut);
            ASSERT_EQ(cut, text.substr(0, kept));
        }
        wchar_t* const both = page.Text(L"head", length + 5);
        ASSERT_EQ(UtilStrcat(both, source), both);
        ASSERT_EQ(both, L"head" + text);

        char* const odd = page.Last(2 * length + 3); // an odd address
        auto* const oddText = reinterpret_cast<wchar_t*>(odd);
        UtilStrcpy(oddText, source);
        ASSERT_EQ(UtilStrlen(oddText), length);
        ASSERT_EQ(UtilStrcmp(oddText, source), 0);
        ASSERT_EQ(UtilStrchr(oddText, L'\0'), oddText + length);
        ASSERT_EQ(UtilStrrchr(oddText, L'\x1234'), nullptr);
    }
    wchar_t untouched[] = L"xy";
    UtilStrncpy(untouched, L"abc", 0);
    EXPECT_STREQ(untouched, L"xy");
}

TEST(Strings, CopyAndFillBytesOfEveryCount) {
    clsPageEnd page, pageOfSource;
    for (UINT count = 0; count <= 140; ++count) {
        std::string bytes(count, '\0');
        std::iota(bytes.begin(), bytes.end(), '\1');
        char *const source = pageOfSource.Last(count), *const to = page.Last(count);
        std::memcpy(source, bytes.data(), count);
        ASSERT_EQ(UtilMemset(to, 0x1A5, count), to);
        ASSERT_EQ(std::string(to - 1, count + 1), '\xCC' + std::string(count, '\xA5'));
        ASSERT_EQ(UtilMemcpy(to, source, count), to);
        ASSERT_EQ(std::string(to - 1, count + 1), '\xCC' + bytes);
        UtilMemcpy(to - 3, to, count);
        UtilMemcpy(to, to - 3, count); // to the right, overlapping
        ASSERT_EQ(std::string(to, count), bytes);
    }
    EXPECT_EQ(UtilMemcpy(nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(UtilMemset(nullptr, 1, 0), nullptr);
}

TEST(Strings, ChangeInPlace) {
    clsPageEnd page;
    const auto changed = [&](const std::wstring& before, auto change, size_t units) {
        wchar_t* const text = page.Text(before, std::max(units, before.size() + 1));
        change(text);
        return std::wstring(text);
    };
    const auto number = [](const std::u16string& column) {
        return static_cast<UINT>(std::stoll(NarrowCase(column), nullptr, 0));
    };
    for (const scCaseRow& row : CaseRows("strings/trimmed", 4)) {
        EXPECT_EQ(changed(WideCase(row[0]), UtilLtrim, 0), WideCase(row[1])) << row.where;
        EXPECT_EQ(changed(WideCase(row[0]), UtilRtrim, 0), WideCase(row[2])) << row.where;
        EXPECT_EQ(changed(WideCase(row[0]), UtilAtrim, 0), WideCase(row[3])) << row.where;
    }
    for (const scCaseRow& row : CaseRows("strings/stuffed", 4)) {
        const std::wstring insertion = WideCase(row[2]);
        const auto stuff = [&](wchar_t* text) {
            EXPECT_EQ(UtilStuff(text, number(row[0]), number(row[1]),
                                insertion == L"-" ? nullptr : insertion.c_str()),
                      0);
        };
        EXPECT_EQ(changed(L"abcdef", stuff, row[3].size() + 1), WideCase(row[3])) << row.where;
    }
    for (const scCaseRow& row : CaseRows("strings/parts", 3)) {
        const auto cut = [&](wchar_t* text) {
            EXPECT_EQ(UtilSubstr(text, static_cast<INT>(number(row[0])), number(row[1])), 0);
        };
        EXPECT_EQ(changed(L"abcdef", cut, 0), WideCase(row[2])) << row.where;
    }
}

TEST(Strings, FormatIsCutAndTerminated) {
    clsPageEnd page;
    clsLog log;
    for (const UINT size : {13u, 12u, 11u, 2u, 1u}) {
        wchar_t* const text = page.LastUnits(size);
        const std::wstring whole = L"12 ab cd ef";
        EXPECT_EQ(UtilSafeSprintf(text, size, L"%I64u %s %hs %ws", 12ULL, L"ab", "cd", L"ef"),
                  size < 12 ? -1 : 11);
        EXPECT_EQ(text, whole.substr(0, size - 1));
    }
    wchar_t* const text = page.Text(L"x");
    EXPECT_EQ(UtilSafeSprintf(text, 0, L"abc"), -1);
    EXPECT_STREQ(text, L"x");
    EXPECT_EQ(UtilSafeSprintf(text, 2, L""), 0);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(Strings, PointersAreAlwaysGood) {
    EXPECT_EQ(UtilIsRPtr(nullptr, 4), 1);
    EXPECT_EQ(UtilIsWPtr(nullptr, 4), 1);
    EXPECT_EQ(UtilIsString(nullptr, 4), 1);
}

// The check is switched on when the library is loaded: a copy of it, under another name.
TEST(StringCheck, ClearsBeforeItCopiesAndReportsCuts) {
    const clsTempFolder folder;
    clsCopy::MakeFile(folder / L"checked.dll");
    SetEnvironmentVariableW(L"TVUT22_STRING_CHECK", L"1");
    const clsCopy library(folder / L"checked.dll");
    SetEnvironmentVariableW(L"TVUT22_STRING_CHECK", nullptr);
    auto* const copy = library.Find(UtilStrcpy, "UtilStrcpy");
    auto* const copyPart = library.Find(UtilStrncpy, "UtilStrncpy");
    auto* const part = library.Find(UtilSubstr, "UtilSubstr");
    auto* const format = library.Find(UtilSafeSprintf, "UtilSafeSprintf");
    ASSERT_TRUE(copy && copyPart && part && format);

    wchar_t text[8] = L"abcdef";
    EXPECT_STREQ(copy(text, text), L"abcdef");
    EXPECT_STREQ(copy(text + 2, text), L"ab"); // the terminator that the check wrote
    EXPECT_STREQ(copyPart(text, L"xy", 0), L"");
    EXPECT_STREQ(copyPart(text, L"abcdef", 4), L"abc");
    part(text, 2, 2);
    EXPECT_STREQ(text, L"bc");
    part(text, 1, 0xFFFFFFFF);
    EXPECT_STREQ(text, L"bc");
    part(text, 1, 1);
    EXPECT_STREQ(text, L"");

    const clsLog log;
    EXPECT_EQ(format(text, 8, L"%d", 1234567), 7);
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_EQ(format(text, 8, L"%d", 12345678), -1);
    EXPECT_EQ(format(text, 8, L""), 0);
    EXPECT_EQ(log.Lines(), std::vector<std::string>(2, "UtilSafeSprintf: destination buffer too small\n"));
}

} // namespace
} // namespace testing_prof
