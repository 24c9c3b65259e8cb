// Numbers to text and back, character by character as the platform's C runtime does it.
//
// The scanners take what swscanf takes for %d, %X, %I64u and %I64X: blanks and a sign before the
// number, overflow that wraps. They stop at the first character that does not fit. Nothing here
// allocates.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

// Text under construction, large enough for every typed value.
class clsValueText {
  public:
    void Put(char16_t c) { text_[length_++] = c; }
    void Put(std::u16string_view text) {
        for (const char16_t c : text)
            Put(c);
    }
    void PutDecimal(std::int32_t number);
    void PutUnsigned(std::uint64_t number);
    void PutHexadecimal(std::uint64_t number, std::size_t digits); // this many at least, upper case
    void PutFixed(double number);                                  // six decimals

    std::u16string_view View() const { return {text_.data(), length_}; }

  private:
    void PutDigits(const char* begin, const char* end);

    std::array<char16_t, 400>
        text_; // one value, of which the longest is a double of 309 digits and 6 decimals
    std::size_t length_ = 0;
};

// Reads text from the front. Every call moves past what it read and returns whether it fitted.
class clsValueScanner {
  public:
    explicit clsValueScanner(std::u16string_view text) : next_(text.data()), end_(next_ + text.size()) {}

    bool Literal(char16_t c) {
        if (next_ == end_ || *next_ != c)
            return false;
        ++next_;
        return true;
    }
    bool Decimal(std::uint32_t& number) { return Integer<10>(number); }
    bool Decimal(std::uint64_t& number) { return Integer<10>(number); }
    bool Hexadecimal(std::uint32_t& number) { return Integer<16>(number); }
    bool Hexadecimal(std::uint64_t& number) { return Integer<16>(number); }

  private:
    template <unsigned base, class Unsigned>
    bool Integer(Unsigned& number);

    const char16_t* next_;
    const char16_t* end_;
};

// The double that a text begins with, after blanks; 0 when there is none. Correctly rounded; too
// large a number is infinite.
double ProfpScanDouble(std::u16string_view text);

} // namespace tvut
