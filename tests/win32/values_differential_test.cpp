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
struct Outcome {
    INT result;
    Numbers numbers;
    bool operator==(const Outcome&) const = default;
};

constexpr INT kSentinel = 0x5A5A5A5A;
constexpr INT64 kSentinel64 = 0x5A5A5A5A5A5A5A5A;

template <class T>
int scan(const std::wstring& text, const wchar_t* format, T* out) {
    return __ms_swscanf(text.c_str(), format, out, out + 1, out + 2, out + 3);
}

template <class T>
using Fields = std::array<T, 4>;

template <class T>
Outcome outcome(bool parsed, const Fields<T>& out) {
    return {parsed ? PROF_OK : PROF_NOT_PARSED, {out[0], out[1], out[2], out[3]}};
}

constexpr Fields<INT> kUnset = {kSentinel, kSentinel, kSentinel, kSentinel};

Outcome platformInt(const std::wstring& text) {
    Fields<INT> out = {kSentinel};
    const std::wstring seen = text.substr(0, 199);
    return outcome(scan(seen, L"x%X", out.data()) == 1 || scan(seen, L"%d", out.data()) == 1, out);
}

Outcome platformInt64(const std::wstring& text) {
    Fields<INT64> out = {kSentinel64};
    const std::wstring seen = text.substr(0, 63);
    return outcome(scan(seen, L"x%I64X", out.data()) == 1 || scan(seen, L"%I64u", out.data()) == 1, out);
}

Outcome platformRect(const std::wstring& text) {
    Fields<INT> out = kUnset;
    return outcome(scan(text.substr(0, 199), L"(%d,%d,%d,%d)", out.data()) == 4, out);
}

Outcome platformPoint(const std::wstring& text) {
    Fields<INT> out = {kSentinel, kSentinel};
    return outcome(scan(text.substr(0, 199), L"(%d,%d)", out.data()) == 2, out);
}

Outcome platformColour(const std::wstring& text) {
    Fields<INT> out = {kSentinel};
    const std::wstring seen = text.substr(0, 199);
    if (scan(seen, L"x%lx", out.data()) == 1)
        return {PROF_OK, {static_cast<UINT>(out[0])}};
    if (scan(seen, L"(%d,%d,%d)", out.data()) == 3)
        return {PROF_OK, {(out[0] & 0xFF) | (out[1] & 0xFF) << 8 | (out[2] & 0xFF) << 16}};
    return {PROF_NOT_PARSED, {kSentinel}};
}

struct Reader {
    const char* name;
    Outcome (*platform)(const std::wstring& text);
    Outcome (*library)(ProfJob job);
};

/// What a Get makes of item "i", and the first fields of what it stored.
template <class Out, class Default>
Outcome got(ProfJob job, INT(TVUT22_CALL* get)(ProfJob, ProfList, const wchar_t*, Out*, Default)) {
    Out out;
    Fields<INT> fields = kUnset;
    std::memcpy(&out, fields.data(), sizeof out);
    const INT result = get(job, 0, L"i", &out, Default{});
    if constexpr (std::is_integral_v<Out>)
        return {result, {static_cast<INT64>(out)}};
    std::memcpy(fields.data(), &out, sizeof out);
    for (size_t i = sizeof out / sizeof(INT); i < fields.size(); ++i)
        fields[i] = 0;
    return {result, {fields[0], fields[1], fields[2], fields[3]}};
}

const Reader kReaders[] = {
    {"Int", platformInt, [](ProfJob job) { return got(job, ProfGetIntW); }},
    {"Int64", platformInt64, [](ProfJob job) { return got(job, ProfGetInt64W); }},
    {"Rect", platformRect, [](ProfJob job) { return got(job, ProfGetRectW); }},
    {"Point", platformPoint, [](ProfJob job) { return got(job, ProfGetPointW); }},
    {"Colorref", platformColour, [](ProfJob job) { return got(job, ProfGetColorrefW); }}};

std::string shown(const std::wstring& text) {
    return toBytes(text, CP_UTF8);
}

/// Stops after a few differences: one fault shows in thousands of texts.
class Differences {
  public:
    void compare(const Reader& reader, ProfJob job, const std::wstring& text) {
        const Outcome expected = reader.platform(text), got = reader.library(job);
        if (expected == got || ++count_ > 10)
            return;
        ADD_FAILURE() << reader.name << " of '" << shown(text) << "' (first unit " << std::hex << +text[0]
                      << std::dec << "): " << got.result << " " << got.numbers[0] << "," << got.numbers[1]
                      << "," << got.numbers[2] << "," << got.numbers[3] << ", platform " << expected.result
                      << " " << expected.numbers[0] << "," << expected.numbers[1] << ","
                      << expected.numbers[2] << "," << expected.numbers[3];
    }

  private:
    int count_ = 0;
};

void compareAll(Differences& differences, ProfJob job, const std::wstring& text) {
    ProfSetStringW(job, 0, L"i", text.c_str());
    for (const Reader& reader : kReaders)
        differences.compare(reader, job, text);
}

TEST(ValuesAgainstThePlatform, EveryCodeUnitAroundANumber) {
    const Job job;
    Differences differences;
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
        const std::wstring one(1, static_cast<wchar_t>(unit));
        for (const std::wstring& text :
             {one, one + L"12", L"x" + one + L"1f", L"(" + one + L"1,2," + one + L"3,4)", L"1" + one + L"2"})
            compareAll(differences, job, text);
    }
}

std::wstring randomText(std::mt19937& random) {
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
    const Job job;
    Differences differences;
    std::mt19937 random(1);
    for (int i = 0; i < 60000; ++i)
        compareAll(differences, job, randomText(random));
    for (size_t blanks = 50; blanks < 210; ++blanks)
        compareAll(differences, job, L"(" + std::wstring(blanks, L' ') + L"1234,5,6,7)");
    for (size_t zeros = 50; zeros < 210; ++zeros)
        compareAll(differences, job, std::wstring(zeros, L'0') + L"1234");
}

TEST(ValuesAgainstThePlatform, ConvertersOfManyTexts) {
    std::mt19937 random(2);
    for (int i = 0; i < 60000 && !::testing::Test::HasFailure(); ++i) {
        const std::wstring text = randomText(random);
        INT number = 0, expected[4] = {kSentinel};
        scan(text, L"%d", expected);
        ProfLPSTRtoINTW(text.c_str(), &number, kSentinel);
        EXPECT_EQ(number, expected[0]) << shown(text);
        INT64 big = 0, expectedBig[4] = {kSentinel};
        scan(text, L"%I64u", expectedBig);
        ProfLPSTRtoINT64W(text.c_str(), &big, kSentinel);
        EXPECT_EQ(big, expectedBig[0]) << shown(text);
        RECT rect{}, fallback{kSentinel, kSentinel, kSentinel, kSentinel};
        ProfLPSTRtoRECTW(text.c_str(), &rect, &fallback);
        const Outcome outcome = platformRect(text);
        EXPECT_EQ(rect.left, outcome.result ? kSentinel : outcome.numbers[0]) << shown(text);
        EXPECT_EQ(rect.bottom, outcome.result ? kSentinel : outcome.numbers[3]) << shown(text);
        COLORREF colour = 0;
        ProfLPSTRtoCOLORREFW(text.c_str(), &colour, kSentinel);
        EXPECT_EQ(colour, platformColour(text).numbers[0]) << shown(text);
    }
}

double randomDouble(std::mt19937_64& random) {
    for (;;) {
        const uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value))
            return value;
    }
}

TEST(ValuesAgainstThePlatform, DoublesAreWrittenAlike) {
    const Job job;
    std::mt19937_64 random(3);
    const auto compare = [&](double value) {
        wchar_t expected[400];
        _snwprintf(expected, std::size(expected), L"%f", value);
        ProfSetDoubleW(job, 0, L"d", value);
        ASSERT_EQ(textOf(job, L"d"), expected);
    };
    for (int i = 0; i < 20000; ++i)
        compare(randomDouble(random));
    for (int i = 0; i < 20000; ++i)
        compare(static_cast<double>(static_cast<int64_t>(random())) /
                std::pow(10.0, static_cast<int>(random() % 18)));
    for (const double value : {0.0000005, 0.5e-6, 1.5e-6, 2.5e-6, 0.9999995, 123456.5, 1e22, 1e23,
                               1.7976931348623157e308, HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan("")})
        compare(value);
}

TEST(ValuesAgainstThePlatform, DoublesAreReadBackExactly) {
    const Job job;
    std::mt19937_64 random(4);
    const auto compare = [&](const std::wstring& text, double expected) {
        double value = 0;
        ProfSetStringW(job, 0, L"d", text.c_str());
        EXPECT_EQ(ProfGetDoubleW(job, 0, L"d", &value, 1), PROF_OK);
        ASSERT_EQ(value, expected) << shown(text);
    };
    for (int i = 0; i < 20000; ++i) {
        const double value = randomDouble(random);
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
