// Doubles to text and back, against the standard library's exact conversions.
#include "text/numbers/decimal_double.h"
#include "text/numbers/fixed_decimal.h"
#include "text/numbers/shortest_decimal.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>

using namespace tvut;

namespace {

using Limits = std::numeric_limits<double>;

std::string Fixed(double number) {
    std::array<char16_t, longestFixedDecimal> text;
    char16_t* const end = UtilpPutFixedDecimal(number, text.data());
    return std::string(text.data(), end);
}

// A tie is an odd multiple of 1/128: seven decimals, the last of which are 25 or 75. It is rounded up.
std::string StandardFixed(double number) {
    const double scaled = std::fabs(number) * 128;
    const bool isTie = scaled < 0x1p53 && std::floor(scaled) == scaled && std::fmod(scaled, 2) == 1;
    std::array<char, 400> text;
    char* end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, 6 + isTie)
            .ptr;
    if (isTie)
        ++*(--end - 1);
    return {text.data(), end};
}

// A number in scientific form, with a digit before the point.
double Nearest(const std::string& text) {
    const std::size_t sign = text[0] == '-';
    const std::size_t mark = text.find('e');
    const std::u16string digits(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(mark));
    const std::u16string_view number = std::u16string_view(digits).substr(sign);
    return UtilpNearestDouble({sign != 0, number.substr(0, 1), number.substr(number.size() < 2 ? 1 : 2),
                               std::stoi(text.substr(mark + 1))});
}

template <class Number>
std::string Scientific(Number number, int decimals) {
    std::array<char, 1200> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number,
                                       std::chars_format::scientific, decimals)
                             .ptr};
}

void ExpectRead(const std::string& text) {
    double expected = 0;
    ASSERT_EQ(std::from_chars(text.data(), text.data() + text.size(), expected).ec, std::errc{}) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(Nearest(text)), std::bit_cast<std::uint64_t>(expected)) << text;
}

double RandomDouble(std::mt19937_64& random) {
    const double number = std::bit_cast<double>(random());
    return std::isfinite(number) ? number : 0;
}

} // namespace

TEST(Numbers, AreWrittenAsTheStandardLibraryRoundsThem) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 40000; ++i) {
        const auto whole = static_cast<double>(random() >> random() % 64);
        for (const double number :
             {RandomDouble(random), -whole / std::pow(10.0, random() % 18),
              std::ldexp(whole, -static_cast<int>(random() % 90)), (2 * whole + 1) / 128})
            ASSERT_EQ(Fixed(number), StandardFixed(number)) << number;
    }
    for (const double number : {0.0, -0.0, 0.0000005, 0x1p-74, 0x1.fffffffffffffp-22, 4095.9999995, 0x1p53,
                                0x1p64, Limits::max(), -Limits::max(), Limits::min(), Limits::denorm_min()})
        EXPECT_EQ(Fixed(number), StandardFixed(number)) << number;
}

std::string Shortest(double number) {
    std::array<char16_t, longestShortestDecimal> text;
    char16_t* const end = UtilpPutShortestDecimal(number, text.data());
    return std::string(text.data(), end);
}

TEST(Numbers, HaveTheStandardLibrarysShortestDigits) {
    const auto compare = [](double number) {
        std::array<char, 400> text;
        char* const end =
            std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed).ptr;
        ASSERT_EQ(Shortest(number), std::string(text.data(), end));
    };
    std::mt19937_64 random(4);
    for (int i = 0; i < 20000; ++i) {
        compare(std::ldexp(static_cast<double>(random() >> random() % 64), -static_cast<int>(random() % 80)));
        compare(-static_cast<double>(random() >> random() % 64) / std::pow(10.0, random() % 20));
        if (i % 50 == 0)
            compare(RandomDouble(random));
    }
    for (int power = -1074; power < 1024; ++power)
        compare(std::ldexp(1.0, power));
    for (const double number :
         {0.0, -0.0, 0.1, 0.3, 9.5, 1e23, -Limits::max(), Limits::min(), Limits::denorm_min()})
        compare(number);
}

TEST(Numbers, AreReadAsTheStandardLibraryReadsThem) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 40000; ++i) {
        const int decimals = static_cast<int>(random() % 25);
        ExpectRead(Scientific(RandomDouble(random), decimals));
        ExpectRead(Scientific(std::bit_cast<double>(random() >> (12 + random() % 40)), 16)); // subnormal
    }
}

// What is halfway between two doubles, which differ in the last bit, and just above it.
TEST(Numbers, AreRoundedToEvenHalfway) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 400; ++i) {
        const std::uint64_t bits = (random() & ~(0x7FFull << 52)) | (random() % 970 + 60) << 52;
        const double number = std::bit_cast<double>(bits & ~1ull);
        const double next = std::bit_cast<double>(bits | 1);
        // It has one bit more than a double, which a long double of this compiler holds.
        const std::string halfway = Scientific(number + static_cast<long double>(next - number) / 2, 800);
        EXPECT_EQ(Nearest(halfway), number) << halfway;
        const std::size_t mark = halfway.find('e');
        EXPECT_EQ(Nearest(std::string(halfway).insert(mark, "1")), next);
        EXPECT_EQ(Nearest(std::string(halfway).insert(mark, 30, '0')), number);
    }
}

TEST(Numbers, OutOfRangeAreInfiniteOrZero) {
    const std::u16string zeros(5000, u'0');
    EXPECT_EQ(Nearest("1.7976931348623158e308"), Limits::max());
    EXPECT_EQ(Nearest("1.7976931348623159e308"), Limits::infinity());
    EXPECT_EQ(Nearest("-9e309"), -Limits::infinity());
    EXPECT_EQ(Nearest("2.4703282292062327e-324"), 0);
    EXPECT_EQ(Nearest("2.4703282292062328e-324"), Limits::denorm_min());
    EXPECT_TRUE(std::signbit(Nearest("-1e-400")));
    EXPECT_EQ(UtilpNearestDouble({false, u"1" + zeros, u"", -5000}), 1);
    EXPECT_EQ(UtilpNearestDouble({false, u"", zeros + u"1", 5001}), 1);
    EXPECT_EQ(UtilpNearestDouble({false, u"1", u"", 1ll << 61}), Limits::infinity());
    EXPECT_EQ(UtilpNearestDouble({false, zeros, u"", 1ll << 61}), 0);
}
