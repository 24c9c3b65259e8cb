#include "json_text.h"

#include "printable.h"

#include <algorithm>

namespace tool {

namespace {

void AppendEscape(std::wstring& json, unsigned unit) {
    json += L"\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        json += L"0123456789abcdef"[unit >> shift & 0xF];
}

std::wstring_view TakeDigits(std::wstring_view& text) {
    const auto isDigit = [](wchar_t unit) { return unit >= L'0' && unit <= L'9'; };
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    const std::wstring_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    return digits;
}

bool TakeOneOf(std::wstring_view& text, std::wstring_view units) {
    if (text.empty() || units.find(text.front()) == units.npos)
        return false;
    text.remove_prefix(1);
    return true;
}

} // namespace

void AppendJsonText(std::wstring& json, std::wstring_view text, LoneSurrogates surrogates) {
    json += L'"';
    for (std::size_t at = 0; at < text.size(); ++at) {
        const wchar_t unit = text[at];
        if (unit == L'"' || unit == L'\\')
            json.append({L'\\', unit});
        else if (IsControl(unit))
            AppendEscape(json, static_cast<unsigned>(unit));
        else if (IsHighSurrogate(unit) && at + 1 < text.size() && IsLowSurrogate(text[at + 1]))
            json += text.substr(at++, 2);
        else if (!IsHighSurrogate(unit) && !IsLowSurrogate(unit))
            json += unit;
        else if (surrogates == LoneSurrogates::escaped)
            AppendEscape(json, static_cast<unsigned>(unit));
        else
            json += L'\xfffd';
    }
    json += L'"';
}

bool IsJsonNumber(std::wstring_view text) {
    TakeOneOf(text, L"-");
    const std::wstring_view whole = TakeDigits(text);
    if (whole.empty() || (whole.size() > 1 && whole.front() == L'0'))
        return false;
    if (TakeOneOf(text, L".") && TakeDigits(text).empty())
        return false;
    if (TakeOneOf(text, L"eE")) {
        TakeOneOf(text, L"+-");
        if (TakeDigits(text).empty())
            return false;
    }
    return text.empty();
}

} // namespace tool
