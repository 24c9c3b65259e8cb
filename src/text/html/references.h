// What references stand for: &amp; &#65; &#x41;
#pragma once

#include <string_view>

namespace tvut {

// Whether a reference, from & on, is one by number.
inline bool UtilpIsNumber(std::u16string_view reference) {
    return reference[1] == u'#';
}

// What a reference of at most longestReference units, from & to ; stands for; 0 when it is none. What follows
// it in the text may be read, too, up to the end.
char16_t UtilpReferencedUnit(std::u16string_view reference, const char16_t* end);

} // namespace tvut
