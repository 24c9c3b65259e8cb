// Small formatters; what the C runtime offers differs between platforms in wide text.
#include "columns.h"

#include "json_object.h"
#include "printable.h"
#include "severity.h"

#include <algorithm>
#include <utility>

namespace tool::logpan {

namespace {

constexpr std::size_t deepestIndentation = 50; // senders stop there, too

std::wstring Number(std::uint64_t value, std::size_t width, unsigned base = 10) {
    std::wstring text;
    for (; value > 0 || text.size() < width; value /= base)
        text.insert(text.begin(), L"0123456789abcdef"[value % base]);
    return text;
}

std::wstring DateText(const scStamp& time) {
    return Number(time.year, 4) + L"-" + Number(time.month, 2) + L"-" + Number(time.day, 2);
}

void AddProcess(clsJsonObject& json, const ProcessPtr& process) {
    if (process == nullptr || process->name.empty())
        json.Add(L"process", L"null");
    else
        json.AddText(L"process", process->name);
    if (process == nullptr)
        json.Add(L"pid", L"null");
    else
        json.AddNumber(L"pid", process->id);
}

} // namespace

std::wstring TimeText(const scLine& line) {
    const scStamp& time = line.time;
    if (!IsClock(time))
        return std::wstring{noTimeText};
    return Number(time.hour, 2) + L":" + Number(time.minute, 2) + L":" + Number(time.second, 2) + L"." +
           Number(time.millisecond, 3);
}

std::wstring ThreadText(const scLine& line) {
    return Number(line.thread, 8, 16);
}

std::wstring ProcessorText(const scLine& line) {
    return Number(line.processor, 2, 16);
}

std::wstring SequenceText(const scLine& line) {
    return HasSequence(line) ? std::wstring(1, static_cast<wchar_t>(line.sequence)) : std::wstring{};
}

std::wstring ProcessText(const scLine& line) {
    if (line.process == nullptr)
        return {};
    const std::wstring id = std::to_wstring(line.process->id);
    return line.process->name.empty() ? id : Printable(line.process->name) + L" " + id;
}

std::wstring IndentedText(const scLine& line, std::size_t blanks) {
    const std::size_t start = std::min(line.text.find_first_not_of(L"\r\n"), line.text.size());
    return std::wstring(std::min(line.level, deepestIndentation) * blanks, L' ') +
           Printable(std::wstring_view{line.text}.substr(start));
}

std::wstring PlainLine(const scLine& line) {
    std::wstring module = Printable(line.module);
    module.resize(std::max(module.size(), moduleWidth), L' ');
    const std::wstring sequence = HasSequence(line) ? SequenceText(line) : L"-";
    return TimeText(line) + L" " + module + L" " + ThreadText(line) + L"/" + ProcessorText(line) + L" " +
           sequence + L" " + IndentedText(line);
}

std::wstring JsonLine(const scLine& line) {
    clsJsonObject json;
    if (IsDate(line.time) && IsClock(line.time))
        json.AddText(L"time", DateText(line.time) + L"T" + TimeText(line));
    else
        json.Add(L"time", L"null");
    json.AddText(L"module", line.module);
    json.AddText(L"thread", ThreadText(line));
    json.AddText(L"processor", ProcessorText(line));
    json.Add(L"sequence", HasSequence(line) ? SequenceText(line) : L"null");
    json.AddNumber(L"port", line.port);
    AddProcess(json, line.process);
    json.AddNumber(L"level", line.level);
    json.AddText(L"severity", SeverityName(SeverityOf(line.text)));
    json.AddText(L"text", line.text);
    return std::move(json).Close();
}

} // namespace tool::logpan
