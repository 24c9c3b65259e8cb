#include "platform/language_order.h"

#include "platform/wide.h"

#include <windows.h>

namespace tvut {

int PlatformCompareInLanguage(const char16_t* language, std::u16string_view a,
                              std::u16string_view b) noexcept {
    const int order = CompareStringEx(ToWide(language), 0, ToWide(a.data()), static_cast<int>(a.size()),
                                      ToWide(b.data()), static_cast<int>(b.size()), nullptr, nullptr, 0);
    return order != 0 ? order - CSTR_EQUAL : a.compare(b);
}

} // namespace tvut
