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

using Numbers = std::array<INT64, 4>;

/// What one way of reading makes of a text: its result and the numbers it stored.
struct scOutcome {
    INT result;
    Numbers numbers;
    bool operator==(const scOutcome&) const = default;
};

constexpr INT sentinel = 0x5A5A5A5A;
constexpr INT64 sentinel64 = 0x5A5A5A5A5A5A5A5A;

template <class T>
int Scan(const std::wstring& text, const wchar_t* format, T* out) {
    return __ms_swscanf(text.c_str(), format, out, out + 1, out + 2, out + 3);
}

template <class T>
using Fields = std::array<T, 4>;

template <class T>
scOutcome Outcome(bool parsed, const Fields<T>& out) {
    return {parsed ? PROF_OK : PROF_NOT_PARSED, {out[0], out[1], out[2], out[3]}};
}

constexpr Fields<INT> unsetValue = {sentinel, sentinel, sentinel, sentinel};

scOutcome PlatformInt(const std::wstring& text) {
    Fields<INT> out = {sentinel};
    const std::wstring seen = text.substr(0, 199);
    return Outcome(Scan(seen, L"x%X", out.data()) == 1 || Scan(seen, L"%d", out.data()) == 1, out);
}

scOutcome PlatformInt64(const std::wstring& text) {
    Fields<INT64> out = {sentinel64};
    const std::wstring seen = text.substr(0, 63);
    return Outcome(Scan(seen, L"x%I64X", out.data()) == 1 || Scan(seen, L"%I64u", out.data()) == 1, out);
}

scOutcome PlatformRect(const std::wstring& text) {
    Fields<INT> out = unsetValue;
    return Outcome(Scan(text.substr(0, 199), L"(%d,%d,%d,%d)", out.data()) == 4, out);
}

scOutcome PlatformPoint(const std::wstring& text) {
    Fields<INT> out = {sentinel, sentinel};
    return Outcome(Scan(text.substr(0, 199), L"(%d,%d)", out.data()) == 2, out);
}

scOutcome PlatformColour(const std::wstring& text) {
    Fields<INT> out = {sentinel};
    const std::wstring seen = text.substr(0, 199);
    if (Scan(seen, L"x%lx", out.data()) == 1)
        return {PROF_OK, {static_cast<UINT>(out[0])}};
    if (Scan(seen, L"(%d,%d,%d)", out.data()) == 3)
        return {PROF_OK, {(out[0] & 0xFF) | (out[1] & 0xFF) << 8 | (out[2] & 0xFF) << 16}};
    return {PROF_NOT_PARSED, {sentinel}};
}

struct scReader {
    const char* name;
    scOutcome (*platform)(const std::wstring& text);
    scOutcome (*library)(ProfJob job);
};

/// What a Get makes of item "i", and the first fields of what it stored.
template <class Out, class Default>
scOutcome Got(ProfJob job, INT(TVUT22_CALL* get)(ProfJob, ProfList, const wchar_t*, Out*, Default)) {
    Out out;
    Fields<INT> fields = unsetValue;
    std::memcpy(&out, fields.data(), sizeof out);
    const INT result = get(job, 0, L"i", &out, Default{});
    if constexpr (std::is_integral_v<Out>)
        return {result, {static_cast<INT64>(out)}};
    std::memcpy(fields.data(), &out, sizeof out);
    for (size_t i = sizeof out / sizeof(INT); i < fields.size(); ++i)
        fields[i] = 0;
    return {result, {fields[0], fields[1], fields[2], fields[3]}};
}

const scReader readerCount[] = {
    {"Int", PlatformInt, [](ProfJob job) { return Got(job, ProfGetIntW); }},
    {"Int64", PlatformInt64, [](ProfJob job) { return Got(job, ProfGetInt64W); }},
    {"Rect", PlatformRect, [](ProfJob job) { return Got(job, ProfGetRectW); }},
    {"Point", PlatformPoint, [](ProfJob job) { return Got(job, ProfGetPointW); }},
    {"Colorref", PlatformColour, [](ProfJob job) { return Got(job, ProfGetColorrefW); }}};

std::string Shown(const std::wstring& text) {
    return ToBytes(text, CP_UTF8);
}

/// Stops after a few differences: one fault shows in thousands of texts.
class clsDifferences {
  public:
    void Compare(const scReader& reader, ProfJob job, const std::wstring& text) {
        const scOutcome expected = reader.platform(text), got = reader.library(job);
        if (expected == got || ++count_ > 10)
            return;
        ADD_FAILURE() << reader.name << " of '" << Shown(text) << "' (first unit " << std::hex << +text[0]
                      << std::dec << "): " << got.result << " " << got.numbers[0] << "," << got.numbers[1]
                      << "," << got.numbers[2] << "," << got.numbers[3] << ", platform " << expected.result
                      << " " << expected.numbers[0] << "," << expected.numbers[1] << ","
                      << expected.numbers[2] << "," << expected.numbers[3];
    }

  private:
    int count_ = 0;
};

void CompareAll(clsDifferences& differences, ProfJob job, const std::wstring& text) {
    ProfSetStringW(job, 0, L"i", text.c_str());
    for (const scReader& reader : readerCount)
        differences.Compare(reader, job, text);
}

TEST(ValuesAgainstThePlatform, EveryCodeUnitAroundANumber) {
    const clsJob job;
    clsDifferences differences;
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
        const std::wstring one(1, static_cast<wchar_t>(unit));
        for (const std::wstring& text :
             {one, one + L"12", L"x" + one + L"1f", L"(" + one + L"1,2," + one + L"3,4)", L"1" + one + L"2"})
            CompareAll(differences, job, text);
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
    clsDifferences differences;
    std::mt19937 random(1);
    for (int i = 0; i < 60000; ++i)
        CompareAll(differences, job, RandomText(random));
    for (size_t blanks = 50; blanks < 210; ++blanks)
        CompareAll(differences, job, L"(" + std::wstring(blanks, L' ') + L"1234,5,6,7)");
    for (size_t zeros = 50; zeros < 210; ++zeros)
        CompareAll(differences, job, std::wstring(zeros, L'0') + L"1234");
}

TEST(ValuesAgainstThePlatform, ConvertersOfManyTexts) {
    std::mt19937 random(2);
    for (int i = 0; i < 60000 && !::testing::Test::HasFailure(); ++i) {
        const std::wstring text = RandomText(random);
        INT number = 0, expected[4] = {sentinel};
        Scan(text, L"%d", expected);
        ProfLPSTRtoINTW(text.c_str(), &number, sentinel);
        EXPECT_EQ(number, expected[0]) << Shown(text);
        INT64 big = 0, expectedBig[4] = {sentinel};
        Scan(text, L"%I64u", expectedBig);
        ProfLPSTRtoINT64W(text.c_str(), &big, sentinel);
        EXPECT_EQ(big, expectedBig[0]) << Shown(text);
        RECT rect{}, fallback{sentinel, sentinel, sentinel, sentinel};
        ProfLPSTRtoRECTW(text.c_str(), &rect, &fallback);
        const scOutcome outcome = PlatformRect(text);
        EXPECT_EQ(rect.left, outcome.result ? sentinel : outcome.numbers[0]) << Shown(text);
        EXPECT_EQ(rect.bottom, outcome.result ? sentinel : outcome.numbers[3]) << Shown(text);
        COLORREF colour = 0;
        ProfLPSTRtoCOLORREFW(text.c_str(), &colour, sentinel);
        EXPECT_EQ(colour, PlatformColour(text).numbers[0]) << Shown(text);
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
