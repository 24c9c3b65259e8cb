// A country field: all countries in four languages, each in its own order, and what is known about the one
// that a user has typed.
#include <tvut22/locale.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::string Narrow(const wchar_t* text) {
    char bytes[3 * 96];
    return WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof bytes, nullptr, nullptr) ? bytes : "?";
}

std::vector<UtilLocCountry> Countries(const wchar_t* language) {
    const INT count = UtilLocGetCountryList(language, nullptr, 0);
    std::vector<UtilLocCountry> list(count < 0 ? 0 : static_cast<std::size_t>(count));
    if (list.empty())
        return list;
    list[0].size = sizeof list[0];
    if (UtilLocGetCountryList(language, list.data(), static_cast<UINT>(list.size())) < 0)
        list.clear();
    return list;
}

void List(const wchar_t* language) {
    UtilLocLanguage info = {};
    info.size = sizeof info;
    if (UtilLocGetLanguageInfo(language, nullptr, &info) != UTIL_OK)
        return;
    const auto countries = Countries(language);
    std::printf("%s, %zu:", Narrow(info.nativeName).c_str(), countries.size());
    for (const UtilLocCountry& country : countries)
        std::printf(" %s;", Narrow(country.name).c_str());
    std::printf("\n\n");
}

void Show(const wchar_t* typed) {
    UtilLocCountry country = {};
    country.size = sizeof country;
    if (UtilLocGetCountryInfo(typed, L"de", &country) != UTIL_OK) {
        std::printf("%s: no country\n", Narrow(typed).c_str());
        return;
    }
    std::printf("%s: %s (%s), prices in %s, %s paper, weeks begin on day %u%s\n", Narrow(typed).c_str(),
                Narrow(country.name).c_str(), Narrow(country.nativeName).c_str(),
                Narrow(country.currency).c_str(), country.flags & UTIL_COUNTRY_US_LETTER ? "US letter" : "A4",
                country.firstDay + 1, country.flags & UTIL_COUNTRY_EU ? ", no customs" : "");
}

} // namespace

int main() {
    for (const wchar_t* language : {L"de", L"sv", L"el", L"ja"})
        List(language);
    for (const wchar_t* typed : {L"\x00D6sterreich", L"austria", L"usa", L"392",
                                 L"\x0395\x03BB\x03BB\x03AC\x03B4\x03B1", L"Ruritanien"})
        Show(typed);
}
