// The alphabetical order of a language.
#pragma once

#include <string_view>

namespace tvut {

// Less than, equal to or greater than 0. A language, given by its tag, that the system does not know: by code
// unit.
int PlatformCompareInLanguage(const char16_t* language, std::u16string_view a,
                              std::u16string_view b) noexcept;

} // namespace tvut
