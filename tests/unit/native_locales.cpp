// The locales of the native build: rows of tests/data/cases/locales.txt. Any but those are unknown; null is
// de-DE.
#include "unit/native_locales.h"

#include "platform/locale_data.h"
#include "support/cases.h"

#include <algorithm>

namespace tvut {

namespace {

enum Column : std::size_t { name, calendar, lastYear, shortDate, marks = 7, digits = 9, era, months };

const scCaseRow* Find(const scLocaleChoice& locale) {
    static const std::vector<scCaseRow> rows = CaseRows("locales", 17);
    const std::u16string_view sought = locale.name ? locale.name : u"de-DE";
    const auto found = std::ranges::find_if(rows, [&](const scCaseRow& row) { return row[name] == sought; });
    return found != rows.end() ? &*found : nullptr;
}

// One of the names that a column has, parted by |.
std::u16string_view Part(std::u16string_view column, unsigned number) {
    for (; number != 0; --number)
        column.remove_prefix(column.find(u'|') + 1);
    return column.substr(0, column.find(u'|'));
}

std::u16string_view Text(const scCaseRow& row, LocaleText text, unsigned number) {
    const auto from = [&](LocaleText first) {
        return static_cast<std::size_t>(text) - static_cast<std::size_t>(first);
    };
    if (text <= LocaleText::shortTime)
        return row[shortDate + from(LocaleText::shortDate)];
    if (text <= LocaleText::digits)
        return row[marks + from(LocaleText::beforeNoon)];
    if (text == LocaleText::era)
        return row[era];
    return Part(row[months + from(LocaleText::month)], number);
}

unsigned Number(const std::u16string& column) {
    return static_cast<unsigned>(std::stoul(NarrowCase(column)));
}

std::atomic<std::uint32_t> g_milliseconds{0};
std::atomic<unsigned> g_questions{0};

} // namespace

void SetNativeMilliseconds(std::uint32_t milliseconds) {
    g_milliseconds = milliseconds;
}

unsigned NativeLocalesAsked() {
    return g_questions;
}

bool PlatformHasLocale(const scLocaleChoice& locale) noexcept {
    ++g_questions;
    return Find(locale) != nullptr;
}

std::size_t PlatformLocaleText(const scLocaleChoice& locale, LocaleText text, unsigned number,
                               std::span<char16_t, longestLocaleText> result) noexcept {
    const std::u16string_view found = Text(*Find(locale), text, number);
    std::ranges::copy(found, result.begin());
    return found.size();
}

unsigned PlatformLocaleCalendar(const scLocaleChoice& locale) noexcept {
    return Number((*Find(locale))[calendar]);
}

unsigned PlatformLastTwoDigitYear(const scLocaleChoice& locale, unsigned) noexcept {
    return Number((*Find(locale))[lastYear]);
}

std::uint32_t PlatformMilliseconds() noexcept {
    return g_milliseconds;
}

} // namespace tvut
