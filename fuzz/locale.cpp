// The character set of any text against its plain definition; clock changes by rules of any contents.
#include "require.h"

#include "locale/charset.h"
#include "locale/transition.h"
#include "unit/charset_reference.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string>

using namespace tvut;

namespace {

void CheckCharset(const std::u16string& text) {
    const std::u16string_view read = text.c_str(); // up to the first terminator
    for (const unsigned codePage : {932u, 936u, 949u, 950u, 1252u})
        Require(UtilpLikelyCharset(text.c_str(), codePage) == ReferenceCharset(read, codePage));
}

void CheckTransition(const scDateTime& rule, std::uint16_t year) {
    const scDateTime date = UtilpTransitionInYear(rule, year);
    Require(date.month == rule.month && date.hour == rule.hour && date.dayOfWeek == noDayOfWeek);
    Require(date.year == (rule.month == 0 ? rule.year : year));
    if (rule.year != 0 || rule.month == 0 || rule.month > 12)
        return Require(date.day == rule.day);
    Require(date.day >= 1 && date.day <= 31);
    if (rule.day > 5)
        return;
    const auto found = std::chrono::year{2000 + year % 400} / rule.month / date.day;
    Require(found.ok() && std::chrono::weekday(found).c_encoding() == rule.dayOfWeek % 7u);
    Require((std::max(date.day, std::uint16_t{1}) - 1) / 7 + 1 == std::max<int>(rule.day, 1) ||
            rule.day == 5);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text(size / sizeof(char16_t), u'\0');
    if (!text.empty())
        std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
    CheckCharset(text);
    struct {
        std::uint16_t year;
        scDateTime rule;
    } change{};
    std::memcpy(&change, text.data(), std::min(sizeof change, text.size() * sizeof(char16_t)));
    CheckTransition(change.rule, change.year);
    return 0;
}
