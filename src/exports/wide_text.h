// A caller's UTF-16 text, as the library sees it.
#pragma once

#include "platform/wide.h"
#include "text/string_functions.h"

namespace tvut {

// Empty for null.
inline std::u16string_view UtilpView(const wchar_t* text) noexcept {
    return text ? std::u16string_view(FromWide(text), UtilpLength(FromWide(text))) : std::u16string_view();
}

// The same for what is shown.
inline std::u16string_view UtilpShown(const wchar_t* text) noexcept {
    return text ? UtilpView(text) : u"(NULL)";
}

} // namespace tvut
