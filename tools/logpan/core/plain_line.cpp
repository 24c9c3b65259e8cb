// The module's column is as wide as the module; it ends where the thread's begins.
#include "columns_reader.h"
#include "finish_line.h"
#include "saved_line.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::wstring_view noTime = L"--:--:--.--- ";
constexpr std::size_t timeWidth = noTime.size();
constexpr std::size_t moduleWidth = 8;
constexpr std::size_t longestModule = 300; // with its escapes, and a thread after it
constexpr scStamp badTime{0, 0, 0, 99, 99, 99, 999};

bool TakeTime(clsColumnsReader& columns, scStamp& time) {
    if (columns.Rest().starts_with(noTime)) {
        time = badTime;
        return true;
    }
    return columns.TakeClock(time) && columns.Take(L' ');
}

// " 0000abcd/01 7 " where it stands, and the text after it.
bool TakeOrigin(clsColumnsReader columns, scLine& line) {
    if (!columns.Take(L' ') || !columns.Take(line.thread, 8, 16) || !columns.Take(L'/') ||
        !columns.Take(line.processor, 2, 16))
        return false;
    if (columns.Take(L' ')) {
        if (columns.Take(L'-'))
            line.sequence = 0;
        else if (columns.Take(line.sequence, 1, 10))
            line.sequence += '0';
        else
            return false;
        if (columns.Take(L' ')) {
            line.text = columns.Rest();
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<scLine> ParsePlainLine(std::wstring_view text) {
    scLine line;
    clsColumnsReader columns{text};
    // A line of a log file has its thread where the module would be.
    if (!TakeTime(columns, line.time) || TakeOrigin(clsColumnsReader{text.substr(timeWidth - 1)}, line))
        return std::nullopt;
    const std::wstring_view head = text.substr(0, timeWidth + longestModule);
    constexpr std::size_t before = 9; // " 0000abcd"
    for (std::size_t at = timeWidth + moduleWidth + before; (at = head.find(L'/', at)) != head.npos; ++at) {
        if (!TakeOrigin(clsColumnsReader{text.substr(at - before)}, line))
            continue;
        const std::wstring_view module = text.substr(timeWidth, at - before - timeWidth);
        line.module = module.substr(0, module.find_last_not_of(L' ') + 1);
        FinishLine(line);
        return line;
    }
    return std::nullopt;
}

} // namespace tool::logpan
