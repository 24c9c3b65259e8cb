// Exports of the locale family: countries and languages.
#include "exports/result_call.h"
#include "locale/find_country.h"
#include "locale/kept_names.h"
#include "runtime/language.h"

#include <tvut22/locale.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

using namespace tvut;

namespace {

static_assert(sizeof(UtilLocCountry) == 448 && offsetof(UtilLocCountry, nativeName) == 256);
static_assert(sizeof(UtilLocLanguage) == 456 && offsetof(UtilLocLanguage, nativeName) == 264);
static_assert(std::size(UtilLocCountry{}.name) == std::tuple_size_v<TranslatedName>);

// The language that was set for the program counts whole. Where none was, UtilpLanguage leaves out the
// system's sub-language, by which Chinese and Serbian differ.
std::optional<std::size_t> UserLanguage() noexcept {
    const std::uint32_t language = UtilpLanguage();
    const LANGID system = GetUserDefaultUILanguage();
    return UtilpLanguageOfId(PRIMARYLANGID(system) == language ? system : language);
}

std::optional<std::size_t> FindLanguage(const wchar_t* language) noexcept {
    if (language)
        return UtilpFindLanguage(UtilpView(language));
    const auto users = UserLanguage();
    return users ? users : UtilpFindLanguage(u"en");
}

std::optional<std::uint8_t> FindNames(const wchar_t* language) noexcept {
    const auto found = FindLanguage(language);
    return found ? std::optional(g_languages[*found].names) : std::nullopt;
}

// Ends where the characters end, or at a zero before that.
template <std::size_t size, class Characters>
void Put(wchar_t (&to)[size], const Characters& characters) noexcept {
    static_assert(std::tuple_size_v<Characters> <= size);
    std::size_t at = 0;
    for (; at < characters.size() && characters[at] != 0; ++at)
        to[at] = static_cast<wchar_t>(characters[at]);
}

// As many bytes as the caller has room for, those that are not known here as zeros.
template <class Structure>
void Give(Structure& from, UINT size, std::byte* to) noexcept {
    from.size = size;
    std::memcpy(to, &from, sizeof from);
    std::memset(to + sizeof from, 0, size - sizeof from);
}

void PutNames(const clsTranslatedNames& names, const clsTranslatedNames& native, std::size_t number,
              std::size_t (clsTranslatedNames::*get)(std::size_t, TranslatedName&) const noexcept,
              wchar_t (&name)[96], wchar_t (&nativeName)[96]) {
    TranslatedName text;
    (names.*get)(number, text);
    Put(name, text);
    (native.*get)(number, text);
    Put(nativeName, text);
}

UtilLocCountry CountryInfo(std::size_t number, const clsTranslatedNames& names,
                           const clsTranslatedNames& native) noexcept {
    const scCountry& country = g_countries[number];
    UtilLocCountry info{};
    Put(info.code2, country.code2);
    Put(info.code3, country.code3);
    info.number = country.number;
    Put(info.currency, country.currency);
    info.flags = country.flags;
    info.firstDay = country.firstDay;
    Put(info.language, g_countryLanguages[country.language].tag);
    PutNames(names, native, number, &clsTranslatedNames::Country, info.name, info.nativeName);
    return info;
}

UtilLocLanguage LanguageInfo(std::size_t number, const clsTranslatedNames& names,
                             const clsTranslatedNames& native) noexcept {
    const scLanguage& language = g_languages[number];
    UtilLocLanguage info{};
    Put(info.tag, language.tag);
    Put(info.code3, language.code3);
    Put(info.script, language.script);
    info.langId = language.langId;
    info.codePage = language.codePage;
    info.charset = UtilpCharsetOfCodePage(language.codePage);
    info.flags = UtilpIsRightToLeft(language) ? UTIL_LANGUAGE_RIGHT_TO_LEFT : 0;
    PutNames(names, native, number, &clsTranslatedNames::Language, info.name, info.nativeName);
    return info;
}

template <class Structure>
std::byte* BytesOf(Structure* structure) noexcept {
    return reinterpret_cast<std::byte*>(structure);
}

} // namespace

INT TVUT22_CALL UtilLocGetCountryList(const wchar_t* language, UtilLocCountry* list, UINT count) {
    constexpr auto all = static_cast<UtilResult>(countryCount);
    return UtilpResultOf([&] {
        const auto block = FindNames(language);
        if (!block)
            return UtilResult::notFound;
        if (!list || count == 0)
            return all;
        if (!UtilpIsWhole(list))
            return UtilResult::badArgument;
        const auto names = UtilpNamesOf(*block), native = UtilpNamesOf(nativeNames);
        const auto& order = names->InOrder();
        const UINT size = list->size;
        std::byte* to = BytesOf(list);
        for (std::size_t at = 0; at < std::min<std::size_t>(count, countryCount); ++at, to += size) {
            UtilLocCountry info = CountryInfo(order[at], *names, *native);
            Give(info, size, to);
        }
        return all;
    });
}

INT TVUT22_CALL UtilLocGetCountryInfo(const wchar_t* country, const wchar_t* language, UtilLocCountry* info) {
    return UtilpResultOf([&] {
        if (!country || !UtilpIsWhole(info))
            return UtilResult::badArgument;
        const auto block = FindNames(language);
        if (!block)
            return UtilResult::notFound;
        const auto names = UtilpNamesOf(*block), native = UtilpNamesOf(nativeNames);
        const auto found = UtilpFindCountry(UtilpView(country), *names);
        if (!found)
            return UtilResult::notFound;
        UtilLocCountry made = CountryInfo(*found, *names, *native);
        Give(made, info->size, BytesOf(info));
        return UtilResult::ok;
    });
}

INT TVUT22_CALL UtilLocGetLanguageInfo(const wchar_t* language, const wchar_t* inLanguage,
                                       UtilLocLanguage* info) {
    return UtilpResultOf([&] {
        if (!UtilpIsWhole(info))
            return UtilResult::badArgument;
        const auto found = FindLanguage(language);
        const auto block = FindNames(inLanguage);
        if (!found || !block)
            return UtilResult::notFound;
        UtilLocLanguage made = LanguageInfo(*found, *UtilpNamesOf(*block), *UtilpNamesOf(nativeNames));
        Give(made, info->size, BytesOf(info));
        return UtilResult::ok;
    });
}
