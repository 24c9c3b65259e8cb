// A country by what a caller calls it.
#pragma once

#include "locale/translated_names.h"

namespace tvut {

// The country of a code, a number, or a name: in the language of these names, in English, or its own.
// A code comes first: NGA is Nigeria, also in Vietnamese. Throws std::bad_alloc.
std::optional<std::size_t> UtilpFindCountry(std::u16string_view country, const clsTranslatedNames& names);

} // namespace tvut
