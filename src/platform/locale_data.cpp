#include "platform/locale_data.h"

#include "platform/wide.h"

#include <windows.h>

namespace tvut {

namespace {

const wchar_t* NameOf(const scLocaleChoice& locale) {
    return locale.name ? ToWide(locale.name) : LOCALE_NAME_USER_DEFAULT;
}

DWORD Own(const scLocaleChoice& locale) {
    return locale.withUser ? 0 : LOCALE_NOUSEROVERRIDE;
}

// Both calls count the terminator.
std::size_t Length(int units) {
    return units > 0 ? static_cast<std::size_t>(units) - 1 : 0;
}

std::size_t Ask(const scLocaleChoice& locale, LCTYPE type, std::span<char16_t, longestLocaleText> result) {
    return Length(GetLocaleInfoEx(NameOf(locale), type | Own(locale), ToWide(result.data()),
                                  static_cast<int>(result.size())));
}

std::size_t AskCalendar(const scLocaleChoice& locale, CALID calendar, CALTYPE type,
                        std::span<char16_t, longestLocaleText> result) {
    return Length(GetCalendarInfoEx(NameOf(locale), calendar, nullptr, type | Own(locale),
                                    ToWide(result.data()), static_cast<int>(result.size()), nullptr));
}

unsigned AskNumber(const scLocaleChoice& locale, LCTYPE type) {
    DWORD number = 0;
    const int units = GetLocaleInfoEx(NameOf(locale), type | Own(locale) | LOCALE_RETURN_NUMBER,
                                      reinterpret_cast<wchar_t*>(&number), sizeof number / sizeof(wchar_t));
    return units > 0 ? number : 0;
}

} // namespace

bool PlatformHasLocale(const scLocaleChoice& locale) noexcept {
    return GetLocaleInfoEx(NameOf(locale), LOCALE_SSHORTDATE | Own(locale), nullptr, 0) > 0;
}

std::size_t PlatformLocaleText(const scLocaleChoice& locale, LocaleText text, unsigned number,
                               std::span<char16_t, longestLocaleText> result) noexcept {
    switch (text) {
    case LocaleText::shortDate:
        return Ask(locale, LOCALE_SSHORTDATE, result);
    case LocaleText::longDate:
        return Ask(locale, LOCALE_SLONGDATE, result);
    case LocaleText::time:
        return Ask(locale, LOCALE_STIMEFORMAT, result);
    case LocaleText::shortTime:
        return Ask(locale, LOCALE_SSHORTTIME, result);
    case LocaleText::beforeNoon:
        return Ask(locale, LOCALE_S1159, result);
    case LocaleText::afterNoon:
        return Ask(locale, LOCALE_S2359, result);
    case LocaleText::digits:
        return Ask(locale, LOCALE_SNATIVEDIGITS, result);
    case LocaleText::era:
        return AskCalendar(locale, number, CAL_SERASTRING, result);
    case LocaleText::month:
        return AskCalendar(locale, CAL_GREGORIAN, CAL_SMONTHNAME1 + number, result);
    case LocaleText::monthGenitive:
        return AskCalendar(locale, CAL_GREGORIAN, (CAL_SMONTHNAME1 + number) | CAL_RETURN_GENITIVE_NAMES,
                           result);
    case LocaleText::shortMonth:
        return AskCalendar(locale, CAL_GREGORIAN, CAL_SABBREVMONTHNAME1 + number, result);
    case LocaleText::shortMonthGenitive:
        return AskCalendar(locale, CAL_GREGORIAN,
                           (CAL_SABBREVMONTHNAME1 + number) | CAL_RETURN_GENITIVE_NAMES, result);
    case LocaleText::weekday:
        return AskCalendar(locale, CAL_GREGORIAN, CAL_SDAYNAME1 + number, result);
    case LocaleText::shortWeekday:
        return AskCalendar(locale, CAL_GREGORIAN, CAL_SABBREVDAYNAME1 + number, result);
    }
    return 0;
}

unsigned PlatformLocaleCalendar(const scLocaleChoice& locale) noexcept {
    return AskNumber(locale, LOCALE_ICALENDARTYPE);
}

unsigned PlatformLastTwoDigitYear(const scLocaleChoice& locale, unsigned calendar) noexcept {
    DWORD year = 0;
    const int units =
        GetCalendarInfoEx(NameOf(locale), calendar, nullptr,
                          CAL_ITWODIGITYEARMAX | CAL_RETURN_NUMBER | Own(locale), nullptr, 0, &year);
    return units > 0 ? year : 0;
}

std::uint32_t PlatformMilliseconds() noexcept {
    return GetTickCount();
}

} // namespace tvut
