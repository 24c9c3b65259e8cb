// Text as people may see it on a terminal: nothing in it can move the cursor or change colours.
#pragma once

#include <string>
#include <string_view>

namespace tool {

constexpr bool IsHighSurrogate(wchar_t unit) {
    return unit >= 0xd800 && unit <= 0xdbff;
}
constexpr bool IsLowSurrogate(wchar_t unit) {
    return unit >= 0xdc00 && unit <= 0xdfff;
}
constexpr bool IsControl(wchar_t unit) {
    return unit < 0x20 || (unit >= 0x7f && unit <= 0x9f);
}

// How many units from a position are whole characters and none of them a control character.
std::size_t PlainRun(std::wstring_view text, std::size_t start);

// Control characters become \n, \r, \t or \x1b, lone surrogates \ud800. Backslashes stay single: texts
// hold file names far more often than control characters.
std::wstring Printable(std::wstring_view text);

} // namespace tool
