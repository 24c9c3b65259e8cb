// Escapes for what a terminal must not see.
#include "printable.h"

namespace tool {

namespace {

bool isPairAt(std::wstring_view text, std::size_t at) {
    return isHighSurrogate(text[at]) && at + 1 < text.size() && isLowSurrogate(text[at + 1]);
}

void appendHex(std::wstring& line, std::wstring_view prefix, unsigned value, unsigned digits) {
    line += prefix;
    while (digits-- > 0)
        line += L"0123456789abcdef"[(value >> (4 * digits)) & 0xf];
}

void appendEscape(std::wstring& line, wchar_t unit) {
    switch (unit) {
    case L'\n':
        line += L"\\n";
        return;
    case L'\r':
        line += L"\\r";
        return;
    case L'\t':
        line += L"\\t";
        return;
    default:
        isControl(unit) ? appendHex(line, L"\\x", static_cast<unsigned>(unit), 2)
                        : appendHex(line, L"\\u", static_cast<unsigned>(unit), 4);
    }
}

} // namespace

std::size_t plainRun(std::wstring_view text, std::size_t start) {
    std::size_t at = start;
    while (at < text.size() && !isControl(text[at])) {
        if (isPairAt(text, at))
            ++at;
        else if (isHighSurrogate(text[at]) || isLowSurrogate(text[at]))
            break;
        ++at;
    }
    return at - start;
}

std::wstring printable(std::wstring_view text) {
    std::wstring line;
    line.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t run = plainRun(text, at);
        line += text.substr(at, run);
        at += run;
        if (at < text.size())
            appendEscape(line, text[at]);
    }
    return line;
}

} // namespace tool
