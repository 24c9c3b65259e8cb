// Reads the columns from left to right; whatever does not fit makes the message plain text.
#include "text_message.h"

namespace tool::logpan {

namespace {

constexpr std::wstring_view tagEnd = L": ";

class clsColumns {
  public:
    explicit clsColumns(std::wstring_view text) : rest_(text) {}

    bool Take(wchar_t expected) {
        if (rest_.empty() || rest_.front() != expected)
            return false;
        rest_.remove_prefix(1);
        return true;
    }

    // Exactly that many digits.
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

    std::wstring_view Rest() const { return rest_; }

  private:
    static unsigned DigitOf(wchar_t unit) {
        if (unit >= L'0' && unit <= L'9')
            return static_cast<unsigned>(unit - L'0');
        if (unit >= L'a' && unit <= L'f')
            return static_cast<unsigned>(unit - L'a') + 10;
        return ~0u;
    }

    std::wstring_view rest_;
};

bool TakeTime(clsColumns& columns, scStamp& time) {
    std::uint16_t first = 0;
    std::uint16_t second = 0;
    if (!columns.Take(first, 2, 10) || !columns.Take(L':') || !columns.Take(second, 2, 10))
        return false;
    if (columns.Take(L':')) {
        time.hour = first;
        time.minute = second;
        if (!columns.Take(time.second, 2, 10))
            return false;
    } else {
        time.minute = first;
        time.second = second;
    }
    return columns.Take(L'.') && columns.Take(time.millisecond, 3, 10);
}

bool TakeOrigin(clsColumns& columns, scLine& line) {
    return columns.Take(L' ') && columns.Take(line.thread, 8, 16) && columns.Take(L'/') &&
           columns.Take(line.processor, 2, 16) && columns.Take(L' ') && columns.Take(line.sequence, 1, 10) &&
           columns.Take(L' ');
}

std::optional<scLine> ParseUntagged(std::wstring_view message) {
    scLine line;
    clsColumns columns{message};
    if (!TakeTime(columns, line.time) || !TakeOrigin(columns, line))
        return std::nullopt;
    line.sequence += '0';
    columns.Take(L' '); // stands where a thread's name would
    line.text = columns.Rest();
    return line;
}

} // namespace

std::optional<scLine> ParseTextMessage(std::wstring_view message) {
    if (std::optional<scLine> line = ParseUntagged(message))
        return line;
    const std::size_t end = message.find(tagEnd);
    if (end == std::wstring_view::npos)
        return std::nullopt;
    std::optional<scLine> line = ParseUntagged(message.substr(end + tagEnd.size()));
    if (line)
        line->module = message.substr(0, message.find_last_not_of(L' ', end - (end > 0 ? 1 : 0)) + 1);
    return line;
}

} // namespace tool::logpan
