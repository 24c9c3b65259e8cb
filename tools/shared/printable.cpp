// Escapes for what a terminal must not see.
#include "printable.h"

namespace tool {

namespace {

bool IsPairAt(std::wstring_view text, std::size_t at) {
    return IsHighSurrogate(text[at]) && at + 1 < text.size() && IsLowSurrogate(text[at + 1]);
}

void AppendHex(std::wstring& line, std::wstring_view prefix, unsigned value, unsigned digits) {
    line += prefix;
    while (digits-- > 0)
        line += L"0123456789abcdef"[(value >> (4 * digits)) & 0xf];
}

void AppendEscape(std::wstring& line, wchar_t unit) {
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
        IsControl(unit) ? AppendHex(line, L"\\x", static_cast<unsigned>(unit), 2)
                        : AppendHex(line, L"\\u", static_cast<unsigned>(unit), 4);
    }
}

} // namespace

std::size_t PlainRun(std::wstring_view text, std::size_t start) {
    std::size_t at = start;
    while (at < text.size() && !IsControl(text[at])) {
        if (IsPairAt(text, at))
            ++at;
        else if (IsHighSurrogate(text[at]) || IsLowSurrogate(text[at]))
            break;
        ++at;
    }
    return at - start;
}

std::wstring Printable(std::wstring_view text) {
    std::wstring line;
    line.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t run = PlainRun(text, at);
        line += text.substr(at, run);
        at += run;
        if (at < text.size())
            AppendEscape(line, text[at]);
    }
    return line;
}

} // namespace tool
