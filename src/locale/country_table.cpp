#include "locale/country_table.h"

#include "locale/ascii_code.h"

namespace tvut {

std::optional<std::size_t> UtilpCountryOfCode(std::u16string_view code) noexcept {
    const auto number = UtilpCodeNumber(code);
    const auto found = std::ranges::find_if(g_countries, [&](const scCountry& country) {
        return number ? country.number == *number
                      : UtilpIsCode(code, country.code2) || UtilpIsCode(code, country.code3);
    });
    if (found == g_countries.end())
        return std::nullopt;
    return found - g_countries.begin();
}

} // namespace tvut
