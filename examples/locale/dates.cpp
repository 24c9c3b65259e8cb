// Today in ten languages: the short date and the long one, each read back as a user might have typed it.
//
// EXAMPLE_DAY in the environment, as yyyy-MM-dd, takes the place of today.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <tvut22/locale.h>

namespace {

// The console's text: UTF-8.
std::string Narrow(const wchar_t* text) {
    char bytes[512] = "";
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof bytes, nullptr, nullptr);
    return bytes;
}

// Writes a date, reads what was written, and says whether it is the same day.
std::string ThereAndBack(const SYSTEMTIME& day, const wchar_t* locale, UINT flags) {
    BSTR text = nullptr;
    if (UtilLocLocaleStringFromSystemTime(&day, locale, flags, nullptr, &text) != UTIL_OK)
        return "cannot be written";
    SYSTEMTIME back = {};
    const INT result = UtilLocSystemTimeFromLocaleString(text, locale, flags, nullptr, &back);
    std::string shown = Narrow(text);
    SysFreeString(text);
    const bool isSame = back.wYear == day.wYear && back.wMonth == day.wMonth && back.wDay == day.wDay;
    if (result != UTIL_OK || !isSame)
        shown += " (not read back)";
    return shown;
}

} // namespace

int main() {
    SYSTEMTIME day = {};
    GetLocalTime(&day);
    if (const wchar_t* const other = _wgetenv(L"EXAMPLE_DAY"))
        UtilLocSystemTimeFromLocaleString(other, L"", UTIL_DATETIME_DATE, nullptr, &day);
    const wchar_t* const locales[] = {L"en-US", L"de-DE", L"fr-FR", L"pt-BR", L"ru-RU",
                                      L"el-GR", L"hu-HU", L"ja-JP", L"th-TH", L"ar-EG"};
    for (const wchar_t* locale : locales)
        std::printf("%s: %s | %s\n", Narrow(locale).c_str(),
                    ThereAndBack(day, locale, UTIL_DATETIME_DATE).c_str(),
                    ThereAndBack(day, locale, UTIL_DATETIME_DATE | UTIL_DATETIME_LONG).c_str());

    // What a user types: looser than what is shown, and never guessed.
    const wchar_t* const typed[] = {L"31-12-26", L"31. dezember 2026", L"2026-12-31", L"12/31/2026"};
    for (const wchar_t* text : typed) {
        SYSTEMTIME time = {};
        const INT result =
            UtilLocSystemTimeFromLocaleString(text, L"de-DE", UTIL_DATETIME_DATE, nullptr, &time);
        if (result == UTIL_OK)
            std::printf("typed in de-DE: %s is %04d-%02d-%02d\n", Narrow(text).c_str(), time.wYear,
                        time.wMonth, time.wDay);
        else
            std::printf("typed in de-DE: %s is none (%d)\n", Narrow(text).c_str(), result);
    }
}
