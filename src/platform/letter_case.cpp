#include "platform/letter_case.h"

#include "platform/wide.h"

#include <windows.h>

namespace tvut {

int PlatformCompareIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept {
    return CompareStringOrdinal(ToWide(a.data()), static_cast<int>(a.size()), ToWide(b.data()),
                                static_cast<int>(b.size()), TRUE) -
           CSTR_EQUAL;
}

} // namespace tvut
