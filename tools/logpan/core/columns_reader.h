// Takes a line's columns off the front of its text.
#pragma once

#include "line.h"

#include <string_view>

namespace tool::logpan {

class clsColumnsReader {
  public:
    explicit clsColumnsReader(std::wstring_view text) : rest_(text) {}

    bool Take(wchar_t expected) {
        if (!rest_.starts_with(expected))
            return false;
        rest_.remove_prefix(1);
        return true;
    }

    // Exactly that many digits; letters are small.
    template <class Number>
    bool Take(Number& number, std::size_t digits, unsigned base) {
        unsigned value = 0;
        for (; digits > 0; --digits) {
            const unsigned digit = rest_.empty() ? base : DigitOf(rest_.front());
            if (digit >= base)
                return false;
            value = value * base + digit;
            rest_.remove_prefix(1);
        }
        number = static_cast<Number>(value);
        return true;
    }

    // 12:34:56.789
    bool TakeClock(scStamp& time) {
        return Take(time.hour, 2, 10) && Take(L':') && Take(time.minute, 2, 10) && Take(L':') &&
               Take(time.second, 2, 10) && Take(L'.') && Take(time.millisecond, 3, 10);
    }

    // " 0000abcd/0f 7 ": the thread, the processor, and the last digit of the line counter; a dash for none.
    bool TakeOrigin(scLine& line) {
        if (!Take(L' ') || !Take(line.thread, 8, 16) || !Take(L'/') || !Take(line.processor, 2, 16) ||
            !Take(L' '))
            return false;
        if (Take(L'-'))
            line.sequence = 0;
        else if (Take(line.sequence, 1, 10))
            line.sequence += L'0';
        else
            return false;
        return Take(L' ');
    }

    std::wstring_view Rest() const { return rest_; }

    static unsigned DigitOf(wchar_t unit) {
        if (unit >= L'0' && unit <= L'9')
            return static_cast<unsigned>(unit - L'0');
        if (unit >= L'a' && unit <= L'f')
            return static_cast<unsigned>(unit - L'a') + 10;
        return ~0u;
    }

  private:
    std::wstring_view rest_;
};

} // namespace tool::logpan
