// Countries of ISO 3166-1, and Kosovo: codes, currency, language, customs. Their names are in
// locale/translated_names.h.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace tvut {

struct scCountry {
    constexpr scCountry(std::string_view twoLetters, std::string_view threeLetters, std::string_view tender,
                        std::uint16_t itsNumber, std::uint8_t itsLanguage, std::uint8_t itsFirstDay,
                        std::uint8_t itsFlags)
        : number(itsNumber), language(itsLanguage), firstDay(itsFirstDay & 0xF), flags(itsFlags & 0xF) {
        std::ranges::copy(twoLetters, code2.begin());
        std::ranges::copy(threeLetters, code3.begin());
        std::ranges::copy(tender, currency.begin());
    }
    std::array<char, 2> code2{};
    std::array<char, 3> code3{};
    std::array<char, 3> currency{}; // zero: there is none
    std::uint16_t number;
    std::uint8_t language;     // in g_countryLanguages
    std::uint8_t firstDay : 4; // 0 is Monday
    std::uint8_t flags : 4;    // as the public header has them
};

struct scCountryLanguage {
    constexpr scCountryLanguage(std::string_view itsTag) { std::ranges::copy(itsTag, tag.begin()); }
    std::array<char, 8> tag{}; // terminated; empty for a country without people
};

constexpr std::size_t countryCount = 250;
extern const std::array<scCountry, countryCount> g_countries; // by their codes of two letters
extern const std::span<const scCountryLanguage> g_countryLanguages;

// The country of a code of two or three letters, in either case, or of a number in decimal digits.
std::optional<std::size_t> UtilpCountryOfCode(std::u16string_view code) noexcept;

} // namespace tvut
