// Languages of ISO 639-1, and the two that are written in a second script: codes, script, and what Windows
// calls and writes them by. Their names are in locale/translated_names.h.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tvut {

struct scLanguage {
    constexpr scLanguage(std::string_view itsTag, std::string_view threeLetters, std::string_view itsScript,
                         std::uint16_t itsLangId, std::uint16_t itsCodePage, std::uint8_t itsNames)
        : langId(itsLangId), codePage(itsCodePage), names(itsNames) {
        std::ranges::copy(itsTag, tag.begin());
        std::ranges::copy(threeLetters, code3.begin());
        std::ranges::copy(itsScript, script.begin());
    }
    std::array<char, 8> tag{}; // terminated
    std::array<char, 3> code3{};
    std::array<char, 4> script{};
    std::uint16_t langId;   // 0: Windows has none
    std::uint16_t codePage; // the ANSI one; 0: Unicode only
    std::uint8_t names;     // the block of names in this language; the English one for most
};

constexpr std::size_t languageCount = 186;
extern const std::array<scLanguage, languageCount> g_languages; // by their tags

// The language that a text means: a tag, of which the language and the script count (de, de-AT, zh-TW), a
// code of three letters, or a LANGID in decimal digits.
std::optional<std::size_t> UtilpFindLanguage(std::u16string_view text) noexcept;

// The language of a LANGID, with or without a sub-language.
std::optional<std::size_t> UtilpLanguageOfId(std::uint32_t langId) noexcept;

constexpr bool UtilpIsRightToLeft(const scLanguage& language) {
    constexpr std::array<std::string_view, 4> scripts{"Arab", "Hebr", "Thaa", "Avst"};
    return std::ranges::count(scripts, std::string_view(language.script.data(), language.script.size())) != 0;
}

// The GDI character set of an ANSI code page; the default set for 0.
std::uint32_t UtilpCharsetOfCodePage(std::uint16_t codePage) noexcept;

} // namespace tvut
