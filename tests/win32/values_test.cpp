// Typed values: the texts they are stored as, the texts they accept, and what a failed Get leaves behind.
#include "support/job.h"

#include <cstring>
#include <limits>
#include <optional>
#include <vector>

namespace testing_prof {

template <class T>
bool same(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

namespace {

template <class F>
class Values : public ::testing::Test {
  protected:
    using Unit = typename F::Char;

    static std::basic_string<Unit> text(std::wstring_view wideText) { return in<Unit>(wideText); }

    /// Append and Set of a value both store one text.
    template <class Append, class Set, class Value>
    static void stores(Append append, Set set, Value value, std::wstring_view expected) {
        const Job job(L"set=old;set=second;");
        append(job, 0, text(L"appended").c_str(), value);
        set(job, 0, text(L"set").c_str(), value);
        set(job, 0, text(L"A/new").c_str(), value);
        EXPECT_EQ(textOf(job, L"appended"), expected);
        EXPECT_EQ(textOf(job, L"set"), expected);
        EXPECT_EQ(textOf(job, L"A/new"), expected);
    }

    /// What a Get makes of a stored text. Without an expected value, out must stay as it was.
    template <class Get, class T, class Default>
    static void reads(Get get, const wchar_t* stored, T before, Default defaultValue, INT result,
                      std::optional<T> expected) {
        const Job job;
        ProfSetStringW(job, 0, L"i", stored);
        T out = before;
        EXPECT_EQ(get(job, 0, text(L"i").c_str(), &out, defaultValue), result) << stored;
        EXPECT_TRUE(same(out, expected.value_or(before))) << stored;
    }
};
TYPED_TEST_SUITE(Values, BothForms, FormNames);

constexpr INT64 kMin64 = std::numeric_limits<INT64>::min();
constexpr INT kMin = std::numeric_limits<INT>::min();

TYPED_TEST(Values, AreStoredAsText) {
    using F = TypeParam;
    const auto& test = *this;
    for (const auto& [value, expected] : {std::pair{0, L"FALSE"}, {1, L"TRUE"}, {5, L"TRUE"}, {-1, L"TRUE"}})
        test.stores(F::appendBool, F::setBool, value, expected);
    for (const auto& [value, expected] : {std::pair{0, L"0"}, {-1, L"-1"}, {kMin, L"-2147483648"}})
        test.stores(F::appendInt, F::setInt, value, expected);
    for (const auto& [value, expected] :
         {std::pair{0u, L"x00000000"}, {255u, L"x000000FF"}, {0xDEADBEEFu, L"xDEADBEEF"}})
        test.stores(F::appendIntHex, F::setIntHex, value, expected);
    for (const auto& [value, decimal, hex] : {std::tuple{INT64{0}, L"0", L"x0"},
                                              {INT64{255}, L"255", L"xFF"},
                                              {INT64{-1}, L"18446744073709551615", L"xFFFFFFFFFFFFFFFF"},
                                              {kMin64, L"9223372036854775808", L"x8000000000000000"}}) {
        test.stores(F::appendInt64, F::setInt64, value, decimal);
        test.stores(F::appendInt64Hex, F::setInt64Hex, value, hex);
    }
    for (const auto& [value, expected] : {std::pair{0.5, L"0.500000"},
                                          {-0.0, L"-0.000000"},
                                          {1e15, L"1000000000000000.000000"},
                                          {1e-9, L"0.000000"}})
        test.stores(F::appendDouble, F::setDouble, value, expected);
    test.stores(F::appendDouble, F::setDouble, 0x1p665, // longer than 200 characters, and never cut
                L"1530901034580419511546203250438012376413197432069333112885442359567600"
                L"1144739219517545036902527756905261726842891012253568680701574147108078"
                L"2585043071649294869136754165183653769539196448293593632735232.000000");
    const POINT point{-1, 2};
    test.stores(F::appendPoint, F::setPoint, &point, L"(-1,2)");
    const RECT rect{10, 20, 110, 70}, extreme{kMin, 0, std::numeric_limits<LONG>::max(), -1};
    test.stores(F::appendRect, F::setRect, &rect, L"(10,20,110,70)");
    test.stores(F::appendRect, F::setRect, &extreme, L"(-2147483648,0,2147483647,-1)");
    test.stores(F::appendRectLTWH, F::setRectLTWH, &rect, L"(10,20,100,50)");
    test.stores(F::appendRectLTWH, F::setRectLTWH, &extreme, L"(-2147483648,0,-1,-1)");
    test.stores(F::appendColorref, F::setColorref, 0x00FF8000u, L"(0,128,255)");
    test.stores(F::appendColorref, F::setColorref, 0xAB030201u, L"(1,2,3)");
    using Char = typename TypeParam::Char;
    test.stores(F::appendString, F::setString, test.text(L"x").c_str(), L"x");
    test.stores(F::appendString, F::setString, static_cast<const Char*>(nullptr), L"");
}

TYPED_TEST(Values, NullPointsAndRectanglesAddNothing) {
    const Job job(L"a=1;");
    const auto name = this->text(L"L/a");
    TypeParam::appendPoint(job, 0, name.c_str(), nullptr);
    TypeParam::setPoint(job, 0, name.c_str(), nullptr);
    TypeParam::appendRect(job, 0, name.c_str(), nullptr);
    TypeParam::setRect(job, 0, name.c_str(), nullptr);
    TypeParam::appendRectLTWH(job, 0, name.c_str(), nullptr);
    TypeParam::setRectLTWH(job, 0, name.c_str(), nullptr);
    EXPECT_EQ(textOf(job, L"L/a"), L"<none>");
    EXPECT_EQ(textOf(job, L"a"), L"1");
}

struct IntRow {
    const wchar_t* text;
    INT result;
    std::optional<INT64> value;
};

TYPED_TEST(Values, NumbersAreReadUpToTheFirstCharacterThatDoesNotFit) {
    constexpr INT kBad = PROF_NOT_PARSED;
    const IntRow ints[] = {
        {L"12", 0, 12},         {L"12abc", 0, 12},  {L"  -7", 0, -7},          {L"+7", 0, 7},
        {L"x000000FF", 0, 255}, {L"xff", 0, 255},   {L"x", kBad, {}},          {L"X1", kBad, {}},
        {L" x1", kBad, {}},     {L"x 12", 0, 18},   {L"x-1", 0, -1},           {L"x0x10", 0, 16},
        {L"4294967296", 0, 0},  {L"-", kBad, {}},   {L"abc", kBad, {}},        {L" ", kBad, {}},
        {L"x100000000", 0, 0},  {L"0x10", 0, 0},    {L"1,000", 0, 1},          {L"2147483648", 0, kMin},
        {L"\xFF11", kBad, {}},  {L"\t\r\n5", 0, 5}, {L"", PROF_NOT_FOUND, 77}, {L"xG", kBad, {}},
    };
    for (const IntRow& row : ints)
        this->template reads<decltype(TypeParam::getInt), INT>(
            TypeParam::getInt, row.text, 123, 77, row.result,
            row.value ? std::optional(static_cast<INT>(*row.value)) : std::nullopt);
    const IntRow wides[] = {
        {L"18446744073709551615", 0, -1},
        {L"18446744073709551616", 0, 0},
        {L"-1", 0, -1},
        {L"x8000000000000000", 0, kMin64},
        {L"x10000000000000000", 0, 0},
        {L"12z", 0, 12},
        {L"xFFFFFFFFFFFFFFFF", 0, -1},
        {L"q", kBad, {}},
        {L"", PROF_NOT_FOUND, 77},
    };
    for (const IntRow& row : wides)
        this->template reads<decltype(TypeParam::getInt64), INT64>(TypeParam::getInt64, row.text, INT64{123},
                                                                   INT64{77}, row.result, row.value);
    const std::pair<const wchar_t*, double> doubles[] = {
        {L"1.5", 1.5},
        {L"-2e3x", -2000},
        {L" .25", .25},
        {L"1,5", 1},
        {L"abc", 0},
        {L"1e", 1},
        {L"1e400", std::numeric_limits<double>::infinity()},
        {L"1e-400", 0},
        {L"1e+2", 100},
        {L"5.", 5},
        {L"inf", 0},
        {L"nan", 0},
        {L"0x10", 0},
    };
    for (const auto& [text, value] : doubles)
        this->template reads<decltype(TypeParam::getDouble), double>(TypeParam::getDouble, text, 9.0, 7.0, 0,
                                                                     value);
    this->template reads<decltype(TypeParam::getDouble), double>(TypeParam::getDouble, L"", 9.0, 7.0,
                                                                 PROF_NOT_FOUND, 7.0);
    const std::pair<const wchar_t*, BOOL> bools[] = {{L"TRUE", 1}, {L"T", 1},    {L"Yes", 1},
                                                     {L"yes", 1},  {L"true", 0}, {L"1", 0},
                                                     {L" T", 0},   {L"t", 0},    {L"FALSE", 0}};
    for (const auto& [text, value] : bools)
        this->template reads<decltype(TypeParam::getBool), BOOL>(TypeParam::getBool, text, 9, !value, 0,
                                                                 value);
    this->template reads<decltype(TypeParam::getBool), BOOL>(TypeParam::getBool, L"", 9, 5, PROF_NOT_FOUND,
                                                             5);
}

TYPED_TEST(Values, GroupsAreReadWholeOrNotParsed) {
    const POINT point{1, 2}, pointDefault{7, 8}, pointPartly{1, 99};
    const auto asPoint = [&](const wchar_t* text, INT result, POINT expected) {
        this->template reads<decltype(TypeParam::getPoint), POINT>(TypeParam::getPoint, text, POINT{99, 99},
                                                                   &pointDefault, result, expected);
    };
    for (const wchar_t* text : {L"(1,2)", L"(1,2", L"( 1, 2)", L"(1,2)x", L"(+1,\t2"})
        asPoint(text, 0, point);
    for (const wchar_t* text : {L"(1", L"(1 ,2)", L"(1,x)"})
        asPoint(text, PROF_NOT_PARSED, pointPartly);
    for (const wchar_t* text : {L"1,2", L" (1,2)", L"x", L"()"})
        asPoint(text, PROF_NOT_PARSED, POINT{99, 99});
    asPoint(L"", PROF_NOT_FOUND, pointDefault);

    const RECT ltrb{10, 20, 110, 70}, untouched{9, 9, 9, 9}, fallback{1, 2, 3, 4};
    const auto asRect = [&](auto get, const wchar_t* text, INT result, RECT expected) {
        this->template reads<decltype(get), RECT>(get, text, untouched, &fallback, result, expected);
    };
    asRect(TypeParam::getRect, L"(10,20,110,70)", 0, ltrb);
    asRect(TypeParam::getRectLTWH, L"(10,20,100,50)", 0, ltrb);
    asRect(TypeParam::getRectLTWH, L"(2147483647,0,1,0)", 0, {2147483647, 0, kMin, 0});
    asRect(TypeParam::getRect, L"no", PROF_NOT_PARSED, untouched);
    asRect(TypeParam::getRect, L"", PROF_NOT_FOUND, fallback);
    asRect(TypeParam::getRectLTWH, L"", PROF_NOT_FOUND, fallback);
    asRect(TypeParam::getRect, L"(1,2,3)", PROF_NOT_PARSED, {1, 2, 3, 9});

    const auto asColour = [&](const wchar_t* text, INT result, std::optional<COLORREF> expected) {
        this->template reads<decltype(TypeParam::getColorref), COLORREF>(
            TypeParam::getColorref, text, 0xABCDu, 0x123456u, result, expected);
    };
    for (const wchar_t* text : {L"(0,128,255)", L"x00ff8000", L"(256,-128,511)", L"xFF8000", L"(0,128,255"})
        asColour(text, 0, 0x00FF8000u);
    asColour(L"xFFFFFFFF", 0, 0xFFFFFFFFu);
    asColour(L"(1,2)", PROF_NOT_PARSED, {});
    asColour(L"16", PROF_NOT_PARSED, {});
    asColour(L"", PROF_NOT_FOUND, 0x123456u);
}

// Gets that find nothing, at every kind of "nothing".
TYPED_TEST(Values, MissingItemsGiveTheDefault) {
    const Job job(L"list{}empty=;");
    const auto name = this->text(L"none"), list = this->text(L"list"), empty = this->text(L"empty");
    using Char = typename TypeParam::Char;
    const auto missing = [&](const Char* path) {
        INT number = 1;
        EXPECT_EQ(TypeParam::getInt(job, 0, path, &number, -5), PROF_NOT_FOUND);
        EXPECT_EQ(number, -5);
        RECT rect{1, 1, 1, 1};
        EXPECT_EQ(TypeParam::getRect(job, 0, path, &rect, nullptr), PROF_NOT_FOUND);
        EXPECT_TRUE(same(rect, RECT{})) << "a null default counts as zeros";
        rect = {1, 2, 3, 4};
        EXPECT_EQ(TypeParam::getRectLTWH(job, 0, path, &rect, &rect), PROF_NOT_FOUND);
        EXPECT_TRUE(same(rect, RECT{1, 2, 3, 4}));
        POINT point{3, 4};
        EXPECT_EQ(TypeParam::getPoint(job, 0, path, &point, nullptr), PROF_NOT_FOUND);
        EXPECT_TRUE(same(point, POINT{}));
        EXPECT_EQ(TypeParam::getDouble(job, 0, path, nullptr, 1), PROF_NOT_FOUND);
    };
    for (const Char* path : {name.c_str(), list.c_str(), empty.c_str(), static_cast<const Char*>(nullptr)})
        missing(path);
    EXPECT_EQ(TypeParam::getStringLength(job, 0, empty.c_str()), 0);
    EXPECT_EQ(TypeParam::getStringLength(job, 0, nullptr), PROF_NOT_FOUND);
    EXPECT_EQ(TypeParam::getStringLength(0, 0, name.c_str()), 0);

    INT number = 1;
    INT64 big = 1;
    RECT rect{1, 1, 1, 1};
    EXPECT_EQ(TypeParam::getInt(0, 0, name.c_str(), &number, 9), 0);
    EXPECT_EQ(TypeParam::getInt64(0, 0, name.c_str(), &big, 9), 0);
    EXPECT_EQ(TypeParam::getRect(0, 0, name.c_str(), &rect, nullptr), 0);
    EXPECT_TRUE(number == 1 && big == 1 && same(rect, RECT{1, 1, 1, 1})) << "the invalid job stores nothing";
}

TYPED_TEST(Values, OnlyTheBeginningOfALongTextIsParsed) {
    const std::wstring blanks(250, L' ');
    const auto read = [&](auto get, auto zero, size_t blanksBefore) {
        const Job job;
        ProfSetStringW(job, 0, L"i", (blanks.substr(0, blanksBefore) + L"42").c_str());
        get(job, 0, this->text(L"i").c_str(), &zero, 0);
        return static_cast<int>(zero);
    };
    EXPECT_EQ(read(TypeParam::getInt, INT{}, 197), 42);
    EXPECT_EQ(read(TypeParam::getInt, INT{}, 198), 4);
    EXPECT_EQ(read(TypeParam::getInt, INT{}, 199), 0);
    EXPECT_EQ(read(TypeParam::getInt64, INT64{}, 61), 42);
    EXPECT_EQ(read(TypeParam::getInt64, INT64{}, 62), 4);
    EXPECT_EQ(read(TypeParam::getDouble, double{}, 250), 42);
}

TYPED_TEST(Values, StringsAreCutToTheBuffer) {
    using Char = typename TypeParam::Char;
    const Job job(L"s=abcdef;");
    const auto stored = this->text(L"abcdef"), fallback = this->text(L"deflt"), name = this->text(L"s");
    const auto none = this->text(L"none");
    const auto cut = [](const std::basic_string<Char>& text, UINT size) {
        std::vector<Char> buffer(12, Char{'#'});
        if (size)
            *std::copy_n(text.begin(), std::min<size_t>(size - 1, text.size()), buffer.begin()) = 0;
        return buffer;
    };
    for (UINT size = 0; size <= 10; ++size) {
        std::vector<Char> buffer(12, Char{'#'});
        EXPECT_EQ(TypeParam::getString(job, 0, name.c_str(), buffer.data(), size, fallback.c_str()), 6);
        EXPECT_EQ(buffer, cut(stored, size)) << size;
        buffer.assign(12, Char{'#'});
        EXPECT_EQ(TypeParam::getString(job, 0, none.c_str(), buffer.data(), size, fallback.c_str()),
                  PROF_NOT_FOUND);
        EXPECT_EQ(buffer, cut(fallback, size)) << size;
        buffer.assign(12, Char{'#'});
        EXPECT_EQ(TypeParam::getString(0, 0, name.c_str(), buffer.data(), size, fallback.c_str()), 0);
        EXPECT_EQ(buffer, cut(fallback, size)) << size;
        buffer.assign(12, Char{'#'});
        EXPECT_EQ(TypeParam::getString(job, 0, none.c_str(), buffer.data(), size, nullptr), PROF_NOT_FOUND);
        EXPECT_EQ(buffer, cut({}, std::max(size, 1u)))
            << "a null default ends the buffer even at size " << size;
        buffer = cut(fallback, 12);
        const auto before = buffer;
        EXPECT_EQ(TypeParam::getString(job, 0, none.c_str(), buffer.data(), size, buffer.data()),
                  PROF_NOT_FOUND);
        EXPECT_EQ(buffer, before) << "a default that is the buffer stays";
    }
    EXPECT_EQ(TypeParam::getString(job, 0, name.c_str(), nullptr, 10, nullptr), 6);
}

TEST(AnsiStrings, NeverEndInHalfACharacter) {
    for (const UINT codePage : {932u, static_cast<UINT>(CP_UTF8)}) {
        const CodePage set(codePage);
        const std::wstring stored = codePage == 932 ? L"a\x65E5\xFF71\x672C"
                                                      L"b\x8A9E"
                                                    : L"a\xE9\x65E5\xD83D\xDE00"
                                                      L"b\x20AC";
        const Job job;
        ProfSetStringW(job, 0, L"s", stored.c_str());
        std::vector<size_t> boundaries; // lengths in bytes of whole-character beginnings
        for (size_t i = 0; i <= stored.size(); ++i)
            if (i == stored.size() || (stored[i] & 0xFC00) != 0xDC00)
                boundaries.push_back(toBytes(stored.substr(0, i), codePage).size());
        const std::string whole = toBytes(stored, codePage);
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

TYPED_TEST(Values, ConvertersFallBackToTheDefault) {
    using Char = typename TypeParam::Char;
    const auto convert = [&](auto call, const wchar_t* text, auto fallback) {
        auto out = fallback;
        std::memset(&out, 0x5A, sizeof out);
        const auto own = this->text(text ? text : L"");
        call(text ? own.c_str() : static_cast<const Char*>(nullptr), &out, fallback);
        return out;
    };
    for (const auto& [text, expected] : {std::pair{L"", 1}, {L"T", 1}, {L"yes", 1}, {L"true", 0}, {L"0", 0}})
        EXPECT_EQ(convert(TypeParam::toBool, text, BOOL{!expected}), expected) << text;
    EXPECT_EQ(convert(TypeParam::toBool, nullptr, BOOL{7}), 7);
    for (const auto& [text, expected] :
         {std::pair{L"12x", 12}, {L" -3", -3}, {L"x000000FF", 77}, {L"", 77}, {L"q", 77}, {L"4294967297", 1}})
        EXPECT_EQ(convert(TypeParam::toInt, text, INT{77}), expected) << text;
    EXPECT_EQ(convert(TypeParam::toInt, nullptr, INT{77}), 77);
    for (const auto& [text, expected] :
         {std::pair{L"18446744073709551615", INT64{-1}}, {L"xFF", 77}, {L"", 77}})
        EXPECT_EQ(convert(TypeParam::toInt64, text, INT64{77}), expected) << text;
    EXPECT_EQ(convert(TypeParam::toInt64, nullptr, INT64{77}), 77);
    for (const auto& [text, expected] : {std::pair{L"(1,2,3)", 0x030201u},
                                         {L"x00ff8000", 0xFF8000u},
                                         {L"(1,2", 77u},
                                         {L"", 77u},
                                         {L"5", 77u}})
        EXPECT_EQ(convert(TypeParam::toColorref, text, COLORREF{77}), expected) << text;
    EXPECT_EQ(convert(TypeParam::toColorref, nullptr, COLORREF{77}), 77u);

    const RECT fallback{1, 2, 3, 4};
    for (const auto& [text, expected] : {std::pair{L"(5,6,7,8)", RECT{5, 6, 7, 8}},
                                         {L"(5,6,7)", fallback},
                                         {L"", fallback},
                                         {L"(9", fallback}}) {
        RECT out{0, 0, 0, 0};
        TypeParam::toRect(this->text(text).c_str(), &out, &fallback);
        EXPECT_TRUE(same(out, expected)) << text;
    }
    RECT out{9, 9, 9, 9};
    TypeParam::toRect(nullptr, &out, &fallback);
    EXPECT_TRUE(same(out, fallback));
    TypeParam::toRect(nullptr, nullptr, nullptr);
    TypeParam::toInt(nullptr, nullptr, 0);
}

} // namespace
} // namespace testing_prof
