// Small formatters; what the C runtime offers differs between platforms in wide text.
#include "columns.h"

#include "printable.h"
#include "severity.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::size_t moduleWidth = 8;
constexpr std::size_t deepestIndentation = 50; // senders stop there, too

std::wstring number(std::uint64_t value, std::size_t width, unsigned base = 10) {
    std::wstring text;
    for (; value > 0 || text.size() < width; value /= base)
        text.insert(text.begin(), L"0123456789abcdef"[value % base]);
    return text;
}

bool isClock(const Stamp& time) {
    return time.hour < 24 && time.minute < 60 && time.second < 60 && time.millisecond < 1000;
}

bool isDate(const Stamp& time) {
    return time.year < 10000 && time.month >= 1 && time.month <= 12 && time.day >= 1 && time.day <= 31;
}

std::wstring dateText(const Stamp& time) {
    return number(time.year, 4) + L"-" + number(time.month, 2) + L"-" + number(time.day, 2);
}

std::wstring_view severityName(Severity severity) {
    switch (severity) {
    case Severity::warning:
        return L"warning";
    case Severity::error:
        return L"error";
    default:
        return {};
    }
}

void appendQuoted(std::wstring& json, std::wstring_view text) {
    json += L'"';
    for (std::size_t at = 0; at < text.size(); ++at) {
        const wchar_t unit = text[at];
        if (unit == L'"' || unit == L'\\')
            json.append({L'\\', unit});
        else if (isControl(unit))
            json += L"\\u" + number(static_cast<std::uint64_t>(unit), 4, 16);
        else if (const std::size_t run = plainRun(text.substr(at, 2), 0); run == 0)
            json += L'\xfffd';
        else if (isHighSurrogate(unit))
            json += text.substr(at++, 2);
        else
            json += unit;
    }
    json += L'"';
}

// "name":value pairs; the value is JSON already.
class Object {
  public:
    void add(std::wstring_view name, std::wstring_view value) {
        json_ += json_.empty() ? L"{\"" : L",\"";
        json_ += name;
        json_ += L"\":";
        json_ += value;
    }
    void addText(std::wstring_view name, std::wstring_view text) {
        std::wstring quoted;
        appendQuoted(quoted, text);
        add(name, quoted);
    }
    void addNumber(std::wstring_view name, std::uint64_t value) { add(name, number(value, 1)); }
    std::wstring close() && { return std::move(json_ += L'}'); }

  private:
    std::wstring json_;
};

} // namespace

std::wstring timeText(const Line& line) {
    const Stamp& time = line.time;
    if (!isClock(time))
        return L"--:--:--.---";
    return number(time.hour, 2) + L":" + number(time.minute, 2) + L":" + number(time.second, 2) + L"." +
           number(time.millisecond, 3);
}

std::wstring threadText(const Line& line) {
    return number(line.thread, 8, 16);
}

std::wstring processorText(const Line& line) {
    return number(line.processor, 2, 16);
}

std::wstring sequenceText(const Line& line) {
    return hasSequence(line) ? std::wstring(1, static_cast<wchar_t>(line.sequence)) : std::wstring{};
}

std::wstring indentedText(const Line& line, std::size_t blanks) {
    const std::size_t start = std::min(line.text.find_first_not_of(L"\r\n"), line.text.size());
    return std::wstring(std::min(line.level, deepestIndentation) * blanks, L' ') +
           printable(std::wstring_view{line.text}.substr(start));
}

std::wstring plainLine(const Line& line) {
    std::wstring module = printable(line.module);
    module.resize(std::max(module.size(), moduleWidth), L' ');
    const std::wstring sequence = hasSequence(line) ? sequenceText(line) : L"-";
    return timeText(line) + L" " + module + L" " + threadText(line) + L"/" + processorText(line) + L" " +
           sequence + L" " + indentedText(line);
}

std::wstring jsonLine(const Line& line) {
    Object json;
    if (isDate(line.time) && isClock(line.time))
        json.addText(L"time", dateText(line.time) + L"T" + timeText(line));
    else
        json.add(L"time", L"null");
    json.addText(L"module", line.module);
    json.addText(L"thread", threadText(line));
    json.addText(L"processor", processorText(line));
    json.add(L"sequence", hasSequence(line) ? sequenceText(line) : L"null");
    json.addNumber(L"port", line.port);
    json.addNumber(L"level", line.level);
    json.addText(L"severity", severityName(severityOf(line.text)));
    json.addText(L"text", line.text);
    return std::move(json).close();
}

} // namespace tool::logpan
