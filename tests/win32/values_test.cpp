// Typed values: the texts they are stored as, the texts they accept, and what a failed Get leaves.
#include "support/job.h"

#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

namespace testing_prof {
namespace {

template <class F>
using Values = InBothForms<F>;
TYPED_TEST_SUITE(Values, BothForms, scFormNames);

constexpr INT64 leastInt64 = std::numeric_limits<INT64>::min();
constexpr INT leastInt = std::numeric_limits<INT>::min(), greatestInt = std::numeric_limits<INT>::max();
constexpr INT notFound = PROF_NOT_FOUND;
constexpr double infinity = std::numeric_limits<double>::infinity();

template <class T>
bool Same(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof(T)) == 0; // NOLINT(bugprone-suspicious-memory-comparison): bits count
}

// Append and Set of a value both store one text.
template <class Char, class Value>
void Stores(void(TVUT22_CALL* append)(ProfJob, ProfList, const Char*, Value),
            void(TVUT22_CALL* set)(ProfJob, ProfList, const Char*, Value), std::type_identity_t<Value> value,
            std::wstring_view expected) {
    const clsJob job(L"set=old;set=second;");
    append(job, 0, In<Char>(L"appended").c_str(), value);
    set(job, 0, In<Char>(L"set").c_str(), value);
    set(job, 0, In<Char>(L"A/new").c_str(), value);
    for (const wchar_t* name : {L"appended", L"set", L"A/new"})
        EXPECT_EQ(TextOf(job, name), expected) << name;
}

TYPED_TEST(Values, AreStoredAsText) {
    using F = TypeParam;
    for (const auto& [value, expected] : {std::pair{0, L"FALSE"}, {1, L"TRUE"}, {5, L"TRUE"}, {-1, L"TRUE"}})
        Stores(F::appendBool, F::setBool, value, expected);
    for (const auto& [value, expected] : {std::pair{0, L"0"}, {-1, L"-1"}, {leastInt, L"-2147483648"}})
        Stores(F::appendInt, F::setInt, value, expected);
    for (const auto& [value, expected] : {std::pair{255u, L"x000000FF"}, {0xDEADBEEFu, L"xDEADBEEF"}})
        Stores(F::appendIntHex, F::setIntHex, value, expected);
    for (const auto& [value, decimal, hex] : {std::tuple{INT64{0}, L"0", L"x0"},
                                              {INT64{-1}, L"18446744073709551615", L"xFFFFFFFFFFFFFFFF"},
                                              {leastInt64, L"9223372036854775808", L"x8000000000000000"}}) {
        Stores(F::appendInt64, F::setInt64, value, decimal);
        Stores(F::appendInt64Hex, F::setInt64Hex, value, hex);
    }
    Stores(F::appendDouble, F::setDouble, -0.0, L"-0.000000");
    Stores(F::appendDouble, F::setDouble, 0x1p665, // longer than 200 characters, and never cut
           L"1530901034580419511546203250438012376413197432069333112885442359567600"
           L"1144739219517545036902527756905261726842891012253568680701574147108078"
           L"2585043071649294869136754165183653769539196448293593632735232.000000");
    const POINT point{-1, 2};
    const RECT rect{10, 20, 110, 70}, extreme{leastInt, 0, greatestInt, -1};
    Stores(F::appendPoint, F::setPoint, &point, L"(-1,2)");
    Stores(F::appendRect, F::setRect, &rect, L"(10,20,110,70)");
    Stores(F::appendRect, F::setRect, &extreme, L"(-2147483648,0,2147483647,-1)");
    Stores(F::appendRectLTWH, F::setRectLTWH, &rect, L"(10,20,100,50)");
    Stores(F::appendRectLTWH, F::setRectLTWH, &extreme, L"(-2147483648,0,-1,-1)");
    Stores(F::appendColorref, F::setColorref, 0x00FF8000u, L"(0,128,255)");
    Stores(F::appendColorref, F::setColorref, 0xAB030201u, L"(1,2,3)");
    Stores(F::appendString, F::setString, In<typename F::Char>(L"x").c_str(), L"x");
    Stores(F::appendString, F::setString, nullptr, L"");
}

TYPED_TEST(Values, NullPointsAndRectanglesAddNothing) {
    const clsJob job(L"a=1;");
    const auto name = In<typename TypeParam::Char>(L"L/a");
    for (const auto add : {TypeParam::appendPoint, TypeParam::setPoint})
        add(job, 0, name.c_str(), nullptr);
    for (const auto add :
         {TypeParam::appendRect, TypeParam::setRect, TypeParam::appendRectLTWH, TypeParam::setRectLTWH})
        add(job, 0, name.c_str(), nullptr);
    EXPECT_EQ(Describe(job), L"a=1;");
}

// What a Get makes of a stored text, with a result variable that was set before.
template <class Char, class Out, class Default>
void Reads(INT(TVUT22_CALL* get)(ProfJob, ProfList, const Char*, Out*, Default), const wchar_t* stored,
           std::type_identity_t<Out> before, std::type_identity_t<Default> fallback, INT result,
           std::type_identity_t<Out> expected) {
    const clsJob job;
    ProfSetStringW(job, 0, L"i", stored);
    EXPECT_EQ(get(job, 0, In<Char>(L"i").c_str(), &before, fallback), result) << stored;
    EXPECT_TRUE(Same(before, expected)) << stored;
}

// How far numbers and groups go is compared with the platform in values_differential_test.
TYPED_TEST(Values, AreReadFromText) {
    using F = TypeParam;
    const std::pair<const wchar_t*, BOOL> bools[] = {{L"TRUE", 1}, {L"T", 1},    {L"Yes", 1},
                                                     {L"yes", 1},  {L"true", 0}, {L"1", 0},
                                                     {L" T", 0},   {L"t", 0},    {L"FALSE", 0}};
    for (const auto& [text, value] : bools)
        Reads(F::getBool, text, 9, 5, PROF_OK, value);
    Reads(F::getInt, L"x0000007F", 9, 7, PROF_OK, 127);
    Reads(F::getInt64, L"18446744073709551615", 9, 7, PROF_OK, -1);
    Reads(F::getPoint, L"(1,2)", {9, 9}, nullptr, PROF_OK, {1, 2});
    Reads(F::getRect, L"(1,2,3,4)", {9, 9, 9, 9}, nullptr, PROF_OK, {1, 2, 3, 4});
    Reads(F::getColorref, L"(0,128,255)", 9, 7, PROF_OK, 0xFF8000);
    Reads(F::getDouble, L"1e400", 9, 7, PROF_OK, infinity);
    Reads(F::getDouble, L"inf", 9, 7, PROF_OK, 0);
    const std::tuple<const wchar_t*, INT, RECT> rects[] = {
        {L"(10,20,100,50)", PROF_OK, {10, 20, 110, 70}},
        {L"(2147483647,0,1,0)", PROF_OK, {greatestInt, 0, leastInt, 0}},
        {L"(1,2,3)", PROF_NOT_PARSED, {1, 2, 3, 9}}};
    for (const auto& [text, result, value] : rects)
        Reads(F::getRectLTWH, text, {9, 9, 9, 9}, nullptr, result, value);
}

// Gets that find nothing, at every kind of "nothing".
TYPED_TEST(Values, MissingItemsGiveTheDefault) {
    using Char = typename TypeParam::Char;
    const clsJob job(L"list{}empty=;");
    const auto name = In<Char>(L"none"), list = In<Char>(L"list"), empty = In<Char>(L"empty");
    INT number = 1;
    INT64 big = 1;
    POINT point{3, 4};
    RECT rect{1, 1, 1, 1};
    const auto asIs = [&] { return number == 1 && big == 1 && point.y == 4 && Same(rect, {1, 1, 1, 1}); };
    TypeParam::getInt64(0, 0, name.c_str(), &big, 9);
    EXPECT_EQ(TypeParam::getInt(0, 0, name.c_str(), &number, 9), 0);
    EXPECT_EQ(TypeParam::getRect(0, 0, name.c_str(), &rect, nullptr), 0);
    EXPECT_EQ(TypeParam::getStringLength(0, 0, name.c_str()), 0);
    EXPECT_TRUE(asIs()) << "the invalid job stores nothing";
    for (const Char* path : {name.c_str(), list.c_str(), empty.c_str(), static_cast<const Char*>(nullptr)}) {
        EXPECT_EQ(TypeParam::getInt(job, 0, path, &number, -5), notFound);
        EXPECT_EQ(number, -5);
        EXPECT_EQ(TypeParam::getRect(job, 0, path, &rect, nullptr), notFound);
        EXPECT_EQ(TypeParam::getPoint(job, 0, path, &point, nullptr), notFound);
        EXPECT_TRUE(Same(rect, RECT{}) && Same(point, POINT{})) << "a null default counts as zeros";
        rect = {1, 2, 3, 4};
        EXPECT_EQ(TypeParam::getRectLTWH(job, 0, path, &rect, &rect), notFound);
        EXPECT_TRUE(Same(rect, RECT{1, 2, 3, 4})) << "the default may be the result variable";
        EXPECT_EQ(TypeParam::getDouble(job, 0, path, nullptr, 1), notFound);
        EXPECT_EQ(TypeParam::getStringLength(job, 0, path), path == empty.c_str() ? 0 : notFound);
    }
}

TYPED_TEST(Values, StringsAreCutToTheBuffer) {
    using Char = typename TypeParam::Char;
    using Text = std::basic_string<Char>;
    const clsJob job(L"s=abcdef;");
    const Text stored = In<Char>(L"abcdef"), fallback = In<Char>(L"deflt"), empty;
    const Text untouched(12, Char{'#'}), name = In<Char>(L"s"), none = In<Char>(L"none");
    const auto gives = [&](ProfJob from, const Text& path, UINT size, const Char* orElse, INT result,
                           const Text& text, UINT written) {
        Text buffer = untouched, expected = untouched;
        if (written)
            expected.replace(0, std::min<size_t>(written, text.size() + 1),
                             (text.substr(0, written - 1) + Char{}));
        EXPECT_EQ(TypeParam::getString(from, 0, path.c_str(), buffer.data(), size, orElse), result);
        EXPECT_EQ(buffer, expected) << "size " << size;
    };
    for (UINT size = 0; size <= 10; ++size) {
        gives(job, name, size, fallback.c_str(), 6, stored, size);
        gives(job, none, size, fallback.c_str(), notFound, fallback, size);
        gives(0, name, size, fallback.c_str(), 0, fallback, size);
        gives(job, none, size, nullptr, notFound, empty, std::max(size, 1u)); // ends it even at size 0
        Text buffer = fallback;
        EXPECT_EQ(TypeParam::getString(job, 0, none.c_str(), buffer.data(), size, buffer.data()), notFound);
        EXPECT_EQ(buffer, fallback) << "a default that is the buffer stays";
    }
    EXPECT_EQ(TypeParam::getString(job, 0, name.c_str(), nullptr, 10, nullptr), 6);
    Text buffer = name + Text(12, Char{}); // the path stands where the text goes
    EXPECT_EQ(TypeParam::getString(job, 0, buffer.c_str(), buffer.data(), 12, fallback.c_str()), 6);
    EXPECT_EQ(buffer.c_str(), stored);
}

TEST(AnsiStrings, NeverEndInHalfACharacter) {
    const std::tuple<UINT, std::wstring, std::vector<size_t>> samples[] = {
        {932, L"a\x65E5\xFF71\x672C", {0, 1, 3, 4, 6}}, // bytes of whole beginnings
        {CP_UTF8, L"a\xE9\x65E5\xD83D\xDE00", {0, 1, 3, 6, 10}}};
    for (const auto& [codePage, stored, boundaries] : samples) {
        const clsCodePage set(codePage);
        const clsJob job;
        ProfSetStringW(job, 0, L"s", stored.c_str());
        const std::string whole = ToBytes(stored, codePage);
        for (UINT size = 1; size <= whole.size() + 2; ++size) {
            std::string buffer(whole.size() + 4, '#');
            EXPECT_EQ(ProfGetStringA(job, 0, "s", buffer.data(), size, ""), static_cast<INT>(stored.size()));
            const size_t fits = *std::prev(std::upper_bound(boundaries.begin(), boundaries.end(), size - 1));
            EXPECT_EQ(std::string(buffer.c_str()), whole.substr(0, fits)) << codePage << " size " << size;
            EXPECT_EQ(buffer.substr(size), std::string(buffer.size() - size, '#'));
            ProfGetStringA(job, 0, "none", buffer.data(), size, whole.c_str());
            EXPECT_EQ(std::string(buffer.c_str()), whole.substr(0, fits)) << "default, size " << size;
        }
    }
}

// What they make of other texts is compared with the platform, too.
TYPED_TEST(Values, ConvertersFallBackToTheDefault) {
    using F = TypeParam;
    using Char = typename F::Char;
    const auto converts = [](auto call, const Char* text, auto fallback, auto expected) {
        auto out = expected;
        std::memset(&out, 0x5A, sizeof out);
        call(text, &out, fallback);
        EXPECT_TRUE(Same(out, expected)) << (text ? Wide(text) : L"(null)");
    };
    for (const auto& [text, expected] : {std::pair{L"", 1}, {L"T", 1}, {L"yes", 1}, {L"true", 0}, {L"0", 0}})
        converts(F::toBool, In<Char>(text).c_str(), 7, expected);
    converts(F::toBool, nullptr, 7, 7);
    const RECT fallback{1, 2, 3, 4};
    const auto empty = In<Char>(L"");
    for (const Char* none : {static_cast<const Char*>(nullptr), empty.c_str()}) {
        converts(F::toInt, none, 77, 77);
        converts(F::toInt64, none, INT64{77}, INT64{77});
        converts(F::toColorref, none, COLORREF{77}, COLORREF{77});
        converts(F::toRect, none, &fallback, fallback);
    }
    F::toRect(nullptr, nullptr, nullptr);
    F::toInt(nullptr, nullptr, 0);
}

} // namespace
} // namespace testing_prof
