// ASCII is folded here, unit by unit. Only where a text has other letters is the system asked for its upper
// case, once for the whole text. Native digits may be pairs of surrogates, so a folded text is never longer
// and may be shorter.
#include "locale/folded_text.h"

#include "platform/letter_case.h"

#include <algorithm>

namespace tvut {

namespace {

// The digit that a text begins with, as ASCII, and how many units it has; 0 when it is none of the locale's.
struct scDigit {
    char16_t digit;
    std::size_t units;
};
scDigit NativeDigit(std::u16string_view text, const scNativeDigits& digits) {
    char32_t point = text[0];
    std::size_t units = 1;
    if ((point & 0xFC00) == 0xD800 && text.size() > 1 && (text[1] & 0xFC00) == 0xDC00) {
        point = 0x10000 + ((point & 0x3FF) << 10) + (text[1] & 0x3FFu);
        units = 2;
    }
    const auto found = std::ranges::find(digits, point);
    return {static_cast<char16_t>(u'0' + (found - digits.begin())), found != digits.end() ? units : 0};
}

} // namespace

bool UtilpIsBlank(char16_t unit) noexcept {
    if (unit < 0xA0)
        return unit == u' ' || unit == u'\t';
    return unit == 0xA0 || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) || unit == 0x202F ||
           unit == 0x205F || unit == 0x3000;
}

bool UtilpIsDirectionMark(char16_t unit) noexcept {
    if (unit < 0x2000)
        return unit == 0x061C;
    return unit == 0x200E || unit == 0x200F || (unit >= 0x202A && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069);
}

bool UtilpIsLetter(char16_t unit) noexcept {
    if (unit < 0x80)
        return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z';
    const bool isPunctuation = unit < 0xAA || (unit >= 0x2000 && unit <= 0x206F) ||
                               (unit >= 0x2E00 && unit <= 0x2E7F) || (unit >= 0x3000 && unit <= 0x303F) ||
                               (unit >= 0xFF00 && unit <= 0xFF0F);
    return !isPunctuation;
}

std::size_t UtilpFold(std::u16string_view text, const scNativeDigits& digits, char16_t* folded) noexcept {
    char16_t* end = folded;
    bool isPlain = true;
    bool afterBlank = true; // none at the beginning
    for (std::size_t at = 0; at < text.size(); ++at) {
        char16_t unit = text[at];
        if (unit >= u'a' && unit <= u'z') {
            unit = static_cast<char16_t>(unit - 0x20);
        } else if (UtilpIsBlank(unit)) {
            if (!afterBlank)
                *end++ = u' ';
            afterBlank = true;
            continue;
        } else if (unit >= 0x80) {
            if (UtilpIsDirectionMark(unit))
                continue;
            if (const scDigit digit = NativeDigit(text.substr(at), digits); digit.units != 0) {
                unit = digit.digit;
                at += digit.units - 1;
            } else {
                isPlain = false;
            }
        }
        *end++ = unit;
        afterBlank = false;
    }
    if (end != folded && afterBlank)
        --end;
    const auto length = static_cast<std::size_t>(end - folded);
    if (!isPlain)
        PlatformToUpperCase({folded, length}, folded);
    return length;
}

} // namespace tvut
