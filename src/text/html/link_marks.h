// What a link of a page is recognised by, and what its address is put into.
#pragma once

#include <string_view>

namespace tvut {

constexpr std::u16string_view linkStart = u"<a";
constexpr std::u16string_view linkAddress = u"href=\"";
constexpr std::u16string_view linkEnd = u"</a>";

// What an address is put into.
constexpr std::u16string_view beforeAddress = u" [";
constexpr std::u16string_view afterAddress = u"]";

// The white space of \s.
inline bool UtilpIsPatternBlank(char16_t unit) {
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

} // namespace tvut
