#include "prof/file_name.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

bool EqualsIgnoringAsciiCase(std::u16string_view text, std::u16string_view upper) {
    return std::equal(text.begin(), text.end(), upper.begin(), upper.end(), [](char16_t a, char16_t b) {
        return (a >= u'a' && a <= u'z' ? static_cast<char16_t>(a - 0x20) : a) == b;
    });
}

bool IsDevice(std::u16string_view base) {
    constexpr std::array<std::u16string_view, 4> plain{u"CON", u"PRN", u"AUX", u"NUL"};
    constexpr std::array<std::u16string_view, 2> numbered{u"COM", u"LPT"};
    const auto is = [base](std::u16string_view name) { return EqualsIgnoringAsciiCase(base, name); };
    if (std::any_of(plain.begin(), plain.end(), is))
        return true;
    if (base.size() != 4 || base[3] < u'1' || base[3] > u'9')
        return false;
    base.remove_suffix(1);
    return std::any_of(numbered.begin(), numbered.end(),
                       [base](std::u16string_view name) { return EqualsIgnoringAsciiCase(base, name); });
}

} // namespace

bool ProfpIsFileName(std::u16string_view path) {
    std::u16string_view name = path.substr(path.find_last_of(u"\\/") + 1);
    if (name.size() >= 2 && name[1] == u':' && name.size() == path.size())
        name.remove_prefix(2); // a drive with a relative path behind it
    if (name.empty() || name.back() == u' ' || name.back() == u'.')
        return false;
    if (std::any_of(name.begin(), name.end(), [](char16_t c) {
            return c < 0x20 || std::u16string_view(u"<>:\"/\\|?*").find(c) != std::u16string_view::npos;
        }))
        return false;
    const std::size_t dot = name.find(u'.');
    const bool oneExtension = dot == name.rfind(u'.');
    return !(oneExtension && IsDevice(name.substr(0, dot)));
}

} // namespace tvut
