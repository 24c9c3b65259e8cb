// Letters without regard to case.
#pragma once

#include <algorithm>
#include <cwctype>
#include <string_view>

namespace tool::logpan {

inline wchar_t Folded(wchar_t unit) {
    if (unit < 0x80)
        return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + (L'a' - L'A')) : unit;
    return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(unit)));
}

inline bool EqualFolded(std::wstring_view one, std::wstring_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](wchar_t first, wchar_t second) { return Folded(first) == Folded(second); });
}

} // namespace tool::logpan
