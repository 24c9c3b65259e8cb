#include "platform/letter_case.h"

#include "platform/wide.h"

#include <windows.h>

namespace tvut {

int PlatformCompareIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept {
    return CompareStringOrdinal(ToWide(a.data()), static_cast<int>(a.size()), ToWide(b.data()),
                                static_cast<int>(b.size()), TRUE) -
           CSTR_EQUAL;
}

void PlatformToUpperCase(std::u16string_view text, char16_t* upper) noexcept {
    const int length = static_cast<int>(text.size());
    if (length != 0)
        LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, ToWide(text.data()), length, ToWide(upper), length,
                      nullptr, nullptr, 0);
}

} // namespace tvut
