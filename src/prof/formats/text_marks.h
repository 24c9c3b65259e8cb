// The characters that the text form cannot hold, and what stands for them.
//
// A name's "=", "[" and "]" would split the line elsewhere or make it a header; a control character
// would end it. Controls become the Unicode control pictures.
#pragma once

#include <string_view>

namespace tvut {

constexpr char16_t controlPictures = 0x2400;

constexpr char16_t ProfpMarkInValue(char16_t c) {
    return c < 0x20 ? static_cast<char16_t>(c + controlPictures) : c;
}

constexpr char16_t ProfpMarkInName(char16_t c) {
    switch (c) {
    case u'=':
        return u'\u2338';
    case u'[':
        return u'\u301A';
    case u']':
        return u'\u301B';
    default:
        return ProfpMarkInValue(c);
    }
}

// The picture of NUL stays as it is: no text of a profile can hold a NUL.
constexpr char16_t ProfpUnmarkInValue(char16_t c) {
    return c > 0x2400 && c < 0x2420 ? static_cast<char16_t>(c - controlPictures) : c;
}

constexpr char16_t ProfpUnmarkInName(char16_t c) {
    switch (c) {
    case u'\u2338':
        return u'=';
    case u'\u301A':
        return u'[';
    case u'\u301B':
        return u']';
    default:
        return ProfpUnmarkInValue(c);
    }
}

} // namespace tvut
