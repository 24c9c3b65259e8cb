// Typed values against the platform's own scanning and formatting, over every code unit and many texts.
#include "support/job.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <random>

namespace testing_prof {
namespace {

// What one way of reading makes of a text: its result and the numbers it stored.
using Numbers = std::array<INT64, 4>;
using Outcome = std::pair<INT, Numbers>;

constexpr INT sentinel = 0x5A5A5A5A;
constexpr INT64 sentinel64 = 0x5A5A5A5A5A5A5A5A;

std::string Shown(const std::wstring& text) {
    return ToBytes(text, CP_UTF8);
}

// How many numbers the platform's scanning finds in the beginning that the library looks at.
template <class T>
int Scan(const std::wstring& text, const wchar_t* format, T* out) {
    const std::wstring seen = text.substr(0, sizeof(T) == 8 ? 63 : 199);
    return __ms_swscanf(seen.c_str(), format, out, out + 1, out + 2, out + 3);
}

// Scans by two formats, the first of which may be none, for all of some numbers.
template <class T>
Outcome Platform(const std::wstring& text, const wchar_t* hex, const wchar_t* format, int count, T unset) {
    T out[4] = {};
    std::fill_n(out, count, unset);
    const bool parsed = (hex && Scan(text, hex, out) == 1) || Scan(text, format, out) == count;
    return {parsed ? PROF_OK : PROF_NOT_PARSED, {out[0], out[1], out[2], out[3]}};
}

Outcome PlatformRect(const std::wstring& text) {
    return Platform(text, nullptr, L"(%d,%d,%d,%d)", 4, sentinel);
}

Outcome PlatformColour(const std::wstring& text) {
    INT out[4] = {sentinel};
    if (Scan(text, L"x%lx", out) == 1)
        return {PROF_OK, {static_cast<UINT>(out[0])}};
    if (Scan(text, L"(%d,%d,%d)", out) == 3)
        return {PROF_OK, {(out[0] & 0xFF) | (out[1] & 0xFF) << 8 | (out[2] & 0xFF) << 16}};
    return {PROF_NOT_PARSED, {sentinel}};
}

// What a Get makes of item "i".
template <class Out, class Default>
Outcome Got(ProfJob job, INT(TVUT22_CALL* get)(ProfJob, ProfList, const wchar_t*, Out*, Default)) {
    Out out;
    std::memset(&out, 0x5A, sizeof out);
    const INT result = get(job, 0, L"i", &out, Default{});
    if constexpr (std::is_integral_v<Out>)
        return {result, {static_cast<INT64>(out)}};
    INT fields[4] = {};
    std::memcpy(fields, &out, sizeof out);
    return {result, {fields[0], fields[1], fields[2], fields[3]}};
}

void CompareAll(ProfJob job, const std::wstring& text) {
    if (testing::Test::HasFailure())
        return; // one fault shows in thousands of texts
    SCOPED_TRACE(Shown(text));
    ProfSetStringW(job, 0, L"i", text.c_str());
    EXPECT_EQ(Got(job, ProfGetIntW), Platform(text, L"x%X", L"%d", 1, sentinel));
    EXPECT_EQ(Got(job, ProfGetInt64W), Platform(text, L"x%I64X", L"%I64u", 1, sentinel64));
    EXPECT_EQ(Got(job, ProfGetRectW), PlatformRect(text));
    EXPECT_EQ(Got(job, ProfGetPointW), Platform(text, nullptr, L"(%d,%d)", 2, sentinel));
    EXPECT_EQ(Got(job, ProfGetColorrefW), PlatformColour(text));
}

TEST(ValuesAgainstThePlatform, EveryCodeUnitAroundANumber) {
    const clsJob job;
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
        const std::wstring one(1, static_cast<wchar_t>(unit));
        for (const std::wstring& text :
             {one, one + L"12", L"x" + one + L"1f", L"(" + one + L"1,2," + one + L"3,4)", L"1" + one + L"2"})
            CompareAll(job, text);
    }
}

std::wstring RandomText(std::mt19937& random) {
    static constexpr std::wstring_view pieces[] = {
        L"(",  L")",          L",",  L"-",   L"+",  L" ",  L"\t", L"x", L"0x",   L"0X",
        L"X",  L"0",          L"1",  L"9",   L"a",  L"F",  L"g",  L".", L"e",    L"7",
        L"\n", L"4294967296", L"77", L"(1,", L"2,", L"--", L"x-", L";", L"\xA0", L"(10,20,30,40)"};
    std::wstring text;
    for (auto left = random() % 9 + 1; left; --left)
        text += pieces[random() % std::size(pieces)];
    return text;
}

TEST(ValuesAgainstThePlatform, ManyTexts) {
    const clsJob job;
    std::mt19937 random(1);
    for (int i = 0; i < 60000; ++i)
        CompareAll(job, RandomText(random));
    for (size_t blanks = 50; blanks < 210; ++blanks)
        CompareAll(job, L"(" + std::wstring(blanks, L' ') + L"1234,5,6,7)");
    for (size_t zeros = 50; zeros < 210; ++zeros)
        CompareAll(job, std::wstring(zeros, L'0') + L"1234");
}

TEST(ValuesAgainstThePlatform, ConvertersOfManyTexts) {
    std::mt19937 random(2);
    for (int i = 0; i < 60000 && !::testing::Test::HasFailure(); ++i) {
        const std::wstring text = RandomText(random);
        SCOPED_TRACE(Shown(text));
        INT number = 0;
        INT64 big = 0;
        RECT rect{}, fallback{sentinel, sentinel, sentinel, sentinel};
        COLORREF colour = 0;
        ProfLPSTRtoINTW(text.c_str(), &number, sentinel);
        EXPECT_EQ(number, Platform(text, nullptr, L"%d", 1, sentinel).second[0]);
        ProfLPSTRtoINT64W(text.c_str(), &big, sentinel64);
        EXPECT_EQ(big, Platform(text, nullptr, L"%I64u", 1, sentinel64).second[0]);
        ProfLPSTRtoRECTW(text.c_str(), &rect, &fallback);
        const auto [result, numbers] = PlatformRect(text);
        EXPECT_EQ(rect.left, result ? sentinel : numbers[0]);
        EXPECT_EQ(rect.bottom, result ? sentinel : numbers[3]);
        ProfLPSTRtoCOLORREFW(text.c_str(), &colour, sentinel);
        EXPECT_EQ(colour, PlatformColour(text).second[0]);
    }
}

double RandomDouble(std::mt19937_64& random) {
    for (;;) {
        const uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value))
            return value;
    }
}

TEST(ValuesAgainstThePlatform, DoublesAreWrittenAlike) {
    const clsJob job;
    std::mt19937_64 random(3);
    const auto compare = [&](double value) {
        wchar_t expected[400];
        _snwprintf(expected, std::size(expected), L"%f", value);
        ProfSetDoubleW(job, 0, L"d", value);
        ASSERT_EQ(TextOf(job, L"d"), expected);
    };
    for (int i = 0; i < 20000; ++i)
        compare(RandomDouble(random));
    for (int i = 0; i < 20000; ++i)
        compare(static_cast<double>(static_cast<int64_t>(random())) /
                std::pow(10.0, static_cast<int>(random() % 18)));
    for (const double value : {0.0000005, 0.5e-6, 1.5e-6, 2.5e-6, 0.9999995, 123456.5, 1e22, 1e23,
                               1.7976931348623157e308, HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan("")})
        compare(value);
}

TEST(ValuesAgainstThePlatform, DoublesAreReadBackExactly) {
    const clsJob job;
    std::mt19937_64 random(4);
    const auto compare = [&](const std::wstring& text, double expected) {
        double value = 0;
        ProfSetStringW(job, 0, L"d", text.c_str());
        EXPECT_EQ(ProfGetDoubleW(job, 0, L"d", &value, 1), PROF_OK);
        ASSERT_EQ(value, expected) << Shown(text);
    };
    for (int i = 0; i < 20000; ++i) {
        const double value = RandomDouble(random);
        wchar_t text[40];
        _snwprintf(text, std::size(text), L"%.17g", value);
        compare(text, value);
    }
    static constexpr std::wstring_view pieces[] = {L"1", L"23", L".", L"5", L"e", L"E", L"-",
                                                   L"+", L" ",  L"0", L"x", L",", L"d", L"7"};
    std::mt19937 choose(5);
    for (int i = 0; i < 60000; ++i) {
        std::wstring text;
        for (auto left = choose() % 8 + 1; left; --left)
            text += pieces[choose() % std::size(pieces)];
        compare(text, _wtof(text.c_str()));
    }
}

} // namespace
} // namespace testing_prof
