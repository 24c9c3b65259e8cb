// Control characters are escaped; a surrogate without its other half, which no UTF-8 can hold, becomes U+FFFD.
#include "json_object.h"

#include "printable.h"

#include <utility>

namespace tool {

namespace {

void AppendEscaped(std::wstring& json, wchar_t unit) {
    json += L"\\u00";
    json += L"0123456789abcdef"[unit >> 4 & 0xF];
    json += L"0123456789abcdef"[unit & 0xF];
}

void AppendQuoted(std::wstring& json, std::wstring_view text) {
    json += L'"';
    for (std::size_t at = 0; at < text.size(); ++at) {
        const wchar_t unit = text[at];
        if (unit == L'"' || unit == L'\\')
            json.append({L'\\', unit});
        else if (isControl(unit))
            AppendEscaped(json, unit);
        else if (plainRun(text.substr(at, 2), 0) == 0)
            json += L'\xfffd';
        else if (isHighSurrogate(unit))
            json += text.substr(at++, 2);
        else
            json += unit;
    }
    json += L'"';
}

} // namespace

void clsJsonObject::Add(std::wstring_view name, std::wstring_view json) {
    json_ += json_.empty() ? L'{' : L',';
    AppendQuoted(json_, name);
    json_ += L':';
    json_ += json;
}

void clsJsonObject::AddText(std::wstring_view name, std::wstring_view text) {
    std::wstring quoted;
    AppendQuoted(quoted, text);
    Add(name, quoted);
}

void clsJsonObject::AddNumber(std::wstring_view name, std::uint64_t value) {
    Add(name, std::to_wstring(value));
}

void clsJsonObject::AddFlag(std::wstring_view name, bool value) {
    Add(name, value ? L"true" : L"false");
}

std::wstring clsJsonObject::Close() && {
    return std::move(json_ += json_.empty() ? L"{}" : L"}");
}

} // namespace tool
