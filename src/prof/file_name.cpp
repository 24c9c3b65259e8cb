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

template <std::size_t count>
bool IsOneOf(std::u16string_view name, const std::array<std::u16string_view, count>& names) {
    return std::any_of(names.begin(), names.end(), [name](std::u16string_view candidate) {
        return EqualsIgnoringAsciiCase(name, candidate);
    });
}

// A device name with a figure behind it, out of those given.
bool IsNumberedDevice(std::u16string_view base, std::u16string_view figures) {
    constexpr std::array<std::u16string_view, 2> names{u"COM", u"LPT"};
    return base.size() == 4 && figures.find(base[3]) != std::u16string_view::npos &&
           IsOneOf(base.substr(0, 3), names);
}

bool IsDevice(std::u16string_view base) {
    constexpr std::array<std::u16string_view, 4> names{u"CON", u"PRN", u"AUX", u"NUL"};
    return IsOneOf(base, names) || IsNumberedDevice(base, u"123456789");
}

// Names that the system takes for a device too, though nobody reserves them.
bool IsHiddenDevice(std::u16string_view base) {
    constexpr std::array<std::u16string_view, 2> names{u"CONIN$", u"CONOUT$"};
    return IsOneOf(base, names) || IsNumberedDevice(base, u"\u00B9\u00B2\u00B3");
}

bool HasOrdinaryCharacters(std::u16string_view name) {
    return std::none_of(name.begin(), name.end(), [](char16_t c) {
        return c < 0x20 || std::u16string_view(u"<>:\"/\\|?*").find(c) != std::u16string_view::npos;
    });
}

// The system drops blanks and dots at the end of a name, so it would name another file.
bool EndsAsItIs(std::u16string_view name) {
    return !name.empty() && name.back() != u' ' && name.back() != u'.';
}

std::u16string_view WithoutEndingBlanks(std::u16string_view text) {
    return text.substr(0, text.find_last_not_of(u' ') + 1); // nothing found: npos + 1 is 0
}

} // namespace

bool ProfpIsFileName(std::u16string_view path) {
    std::u16string_view name = path.substr(path.find_last_of(u"\\/") + 1);
    if (name.size() >= 2 && name[1] == u':' && name.size() == path.size())
        name.remove_prefix(2); // a drive with a relative path behind it
    if (!EndsAsItIs(name) || !HasOrdinaryCharacters(name))
        return false;
    const std::size_t dot = name.find(u'.');
    const bool oneExtension = dot == name.rfind(u'.');
    return !(oneExtension && IsDevice(name.substr(0, dot)));
}

bool ProfpIsBareFileName(std::u16string_view name) {
    const std::u16string_view base = WithoutEndingBlanks(name.substr(0, name.find(u'.')));
    return EndsAsItIs(name) && HasOrdinaryCharacters(name) && !IsDevice(base) && !IsHiddenDevice(base);
}

} // namespace tvut
