// Reads the columns from left to right; whatever does not fit makes the message plain text.
#include "text_message.h"

namespace tool::logpan {

namespace {

constexpr std::wstring_view tagEnd = L": ";

class Columns {
  public:
    explicit Columns(std::wstring_view text) : rest_(text) {}

    bool take(wchar_t expected) {
        if (rest_.empty() || rest_.front() != expected)
            return false;
        rest_.remove_prefix(1);
        return true;
    }

    // Exactly that many digits.
    template <class Number>
    bool take(Number& number, std::size_t digits, unsigned base) {
        unsigned value = 0;
        for (; digits > 0; --digits) {
            const unsigned digit = rest_.empty() ? base : digitOf(rest_.front());
            if (digit >= base)
                return false;
            value = value * base + digit;
            rest_.remove_prefix(1);
        }
        number = static_cast<Number>(value);
        return true;
    }

    std::wstring_view rest() const { return rest_; }

  private:
    static unsigned digitOf(wchar_t unit) {
        if (unit >= L'0' && unit <= L'9')
            return static_cast<unsigned>(unit - L'0');
        if (unit >= L'a' && unit <= L'f')
            return static_cast<unsigned>(unit - L'a') + 10;
        return ~0u;
    }

    std::wstring_view rest_;
};

bool takeTime(Columns& columns, Stamp& time) {
    std::uint16_t first = 0;
    std::uint16_t second = 0;
    if (!columns.take(first, 2, 10) || !columns.take(L':') || !columns.take(second, 2, 10))
        return false;
    if (columns.take(L':')) {
        time.hour = first;
        time.minute = second;
        if (!columns.take(time.second, 2, 10))
            return false;
    } else {
        time.minute = first;
        time.second = second;
    }
    return columns.take(L'.') && columns.take(time.millisecond, 3, 10);
}

bool takeOrigin(Columns& columns, Line& line) {
    return columns.take(L' ') && columns.take(line.thread, 8, 16) && columns.take(L'/') &&
           columns.take(line.processor, 2, 16) && columns.take(L' ') && columns.take(line.sequence, 1, 10) &&
           columns.take(L' ');
}

std::optional<Line> parseUntagged(std::wstring_view message) {
    Line line;
    Columns columns{message};
    if (!takeTime(columns, line.time) || !takeOrigin(columns, line))
        return std::nullopt;
    line.sequence += '0';
    columns.take(L' '); // stands where a thread's name would
    line.text = columns.rest();
    return line;
}

} // namespace

std::optional<Line> parseTextMessage(std::wstring_view message) {
    if (std::optional<Line> line = parseUntagged(message))
        return line;
    const std::size_t end = message.find(tagEnd);
    if (end == std::wstring_view::npos)
        return std::nullopt;
    std::optional<Line> line = parseUntagged(message.substr(end + tagEnd.size()));
    if (line)
        line->module = message.substr(0, message.find_last_not_of(L' ', end - (end > 0 ? 1 : 0)) + 1);
    return line;
}

} // namespace tool::logpan
