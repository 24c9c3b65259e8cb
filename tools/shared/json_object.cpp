// Control characters are escaped; a surrogate without its other half, which no UTF-8 can hold, becomes
// U+FFFD.
#include "json_object.h"

#include "json_text.h"

#include <utility>

namespace tool {

void clsJsonObject::Add(std::wstring_view name, std::wstring_view json) {
    json_ += json_.empty() ? L'{' : L',';
    AppendJsonText(json_, name, LoneSurrogates::replaced);
    json_ += L':';
    json_ += json;
}

void clsJsonObject::AddText(std::wstring_view name, std::wstring_view text) {
    std::wstring quoted;
    AppendJsonText(quoted, text, LoneSurrogates::replaced);
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
