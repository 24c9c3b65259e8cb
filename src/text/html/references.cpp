#include "text/html/references.h"

#include "text/digits.h"
#include "text/html/entities.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <optional>

namespace tvut {

namespace {

// What the C runtime makes of other things than plain digits: blanks, signs, a second 0x, digits of other
// scripts. Nothing when the number does not end where the text does.
std::optional<long> RuntimeNumber(std::u16string_view digits, int base) {
    std::array<wchar_t, longestReference> text{};
    std::copy(digits.begin(), digits.end(), text.begin());
    wchar_t* end = nullptr;
    const long number = std::wcstol(text.data(), &end, base);
    return end == text.data() + digits.size() ? std::optional(number) : std::nullopt;
}

// The unit of &#65; or &#x41;, given what is between # and ;. 0 when there is none.
char16_t NumberedUnit(std::u16string_view digits) {
    unsigned base = 10;
    if (digits.starts_with(u'x')) {
        base = 16;
        digits.remove_prefix(1);
    }
    unsigned number = 0;
    bool plain = true;
    for (const char16_t digit : digits) {
        plain = plain && UtilpDigitOf(digit) < base;
        number = number * base + UtilpDigitOf(digit);
    }
    if (!plain)
        number = static_cast<unsigned>(RuntimeNumber(digits, static_cast<int>(base)).value_or(0));
    return static_cast<char16_t>(number);
}

} // namespace

char16_t UtilpReferencedUnit(std::u16string_view reference, const char16_t* end) {
    return UtilpIsNumber(reference) ? NumberedUnit(reference.substr(2, reference.size() - 3))
                                    : UtilpNamedUnit(reference.substr(1, reference.size() - 2), end);
}

} // namespace tvut
