// The module's column is as wide as the module; it ends where the thread's begins.
#include "columns.h"
#include "columns_reader.h"
#include "finish_line.h"
#include "saved_line.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::size_t moduleAt = noTimeText.size() + 1;
constexpr std::size_t longestModule = 300; // with its escapes, and a thread after it

bool TakeTime(std::wstring_view text, scStamp& time) {
    if (text.size() < moduleAt || text[moduleAt - 1] != L' ')
        return false;
    if (text.starts_with(noTimeText)) {
        time = noTime;
        return true;
    }
    return clsColumnsReader{text}.TakeClock(time);
}

bool TakeOriginAndText(std::wstring_view text, scLine& line) {
    clsColumnsReader columns{text};
    if (!columns.TakeOrigin(line))
        return false;
    line.text = columns.Rest();
    return true;
}

} // namespace

std::optional<scLine> ParsePlainLine(std::wstring_view text) {
    scLine line;
    // A line of a log file has its thread where the module would be.
    if (!TakeTime(text, line.time) || TakeOriginAndText(text.substr(moduleAt - 1), line))
        return std::nullopt;
    const std::wstring_view head = text.substr(0, moduleAt + longestModule);
    constexpr std::size_t before = std::wstring_view{L" 0000abcd"}.size();
    for (std::size_t at = moduleAt + moduleWidth + before; (at = head.find(L'/', at)) != head.npos; ++at) {
        if (!TakeOriginAndText(text.substr(at - before), line))
            continue;
        const std::wstring_view module = text.substr(moduleAt, at - before - moduleAt);
        line.module = module.substr(0, module.find_last_not_of(L' ') + 1);
        FinishLine(line);
        return line;
    }
    return std::nullopt;
}

} // namespace tool::logpan
