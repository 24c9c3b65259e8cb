// Reads the columns from left to right; whatever does not fit makes the message plain text.
#include "text_message.h"

#include "columns_reader.h"

namespace tool::logpan {

namespace {

constexpr std::wstring_view tagEnd = L": ";

bool TakeTime(clsColumnsReader& columns, scStamp& time) {
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

std::optional<scLine> ParseUntagged(std::wstring_view message) {
    scLine line;
    clsColumnsReader columns{message};
    if (!TakeTime(columns, line.time) || !columns.TakeOrigin(line) || !HasSequence(line))
        return std::nullopt;
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
    if (line) {
        const std::wstring_view tag = message.substr(0, end);
        line->module = tag.substr(0, tag.find_last_not_of(L' ') + 1);
    }
    return line;
}

} // namespace tool::logpan
