#include "locale/find_country.h"

#include "locale/kept_names.h"

namespace tvut {

std::optional<std::size_t> UtilpFindCountry(std::u16string_view country, const clsTranslatedNames& names) {
    auto found = UtilpCountryOfCode(country);
    if (!found)
        found = names.FindCountry(country);
    for (const std::uint8_t block : {englishNames, nativeNames})
        if (!found)
            found = UtilpNamesOf(block)->FindCountry(country);
    return found;
}

} // namespace tvut
