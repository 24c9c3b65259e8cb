// A name is looked at as it stands: what each character may be, how it ends, and the part before its first
// dot against two short lists of devices. The system takes more names for devices than anybody reserves, and
// drops blanks and dots at the end of a name, so that such a one would name another file.
#include "files/file_name.h"

#include "platform/exception.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tvut {

namespace {

// A bit for each of the first 128 characters.
constexpr std::array<std::uint32_t, 4> forbidden = [] {
    std::array<std::uint32_t, 4> set{~0u, 0, 0, 0}; // control characters
    for (const char16_t c : {u'<', u'>', u':', u'"', u'/', u'\\', u'|', u'?', u'*'})
        set[c / 32] |= 1u << c % 32;
    return set;
}();

char16_t Upper(char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}

// Against a name in upper-case letters.
bool IsName(std::u16string_view text, std::u16string_view name) {
    return std::ranges::equal(text, name, {}, Upper);
}

template <std::size_t count>
bool IsOneOf(std::u16string_view text, const std::array<std::u16string_view, count>& names) {
    return std::ranges::any_of(names, [&](std::u16string_view name) { return IsName(text, name); });
}

constexpr std::array<std::u16string_view, 4> devices{u"CON", u"PRN", u"AUX", u"NUL"};
constexpr std::array<std::u16string_view, 2> consoles{u"CONIN$", u"CONOUT$"};
constexpr std::u16string_view portNumbers = u"123456789";
constexpr std::u16string_view raisedPortNumbers = u"\u00B9\u00B2\u00B3";

// COM or LPT and one of some figures.
bool IsPort(std::u16string_view stem, std::u16string_view numbers) {
    return stem.size() == 4 && numbers.find(stem[3]) != std::u16string_view::npos &&
           (IsName(stem.substr(0, 3), u"COM") || IsName(stem.substr(0, 3), u"LPT"));
}

// The devices whose names are reserved.
bool IsReserved(std::u16string_view stem) {
    return IsOneOf(stem, devices) || IsPort(stem, portNumbers);
}

// Those, and what the system takes for a device though nobody reserves it.
bool IsDevice(std::u16string_view stem) {
    return IsReserved(stem) || IsOneOf(stem, consoles) || IsPort(stem, raisedPortNumbers);
}

bool CanBeName(std::u16string_view name) {
    return !name.empty() && name.back() != u' ' && name.back() != u'.' &&
           std::ranges::all_of(name, UtilpIsNameCharacter);
}

// What stands after the last separator. A drive before a relative path is no part of it.
std::u16string_view LastComponent(std::u16string_view path) {
    const std::u16string_view name = path.substr(path.find_last_of(u"\\/") + 1);
    const bool driveOnly = name.size() == path.size() && name.size() >= 2 && name[1] == u':';
    return driveOnly ? name.substr(2) : name;
}

} // namespace

bool UtilpIsNameCharacter(char16_t unit) noexcept {
    return unit >= 128 || (forbidden[unit / 32] >> unit % 32 & 1) == 0;
}

bool UtilpIsFileName(std::u16string_view path) noexcept {
    const std::u16string_view name = LastComponent(path);
    const std::size_t dot = name.find(u'.');
    return CanBeName(name) && (dot != name.rfind(u'.') || !IsReserved(name.substr(0, dot)));
}

void UtilpRequireFileName(std::u16string_view path) {
    if (!UtilpIsFileName(path))
        throw clsException("no file can have this name", reason::invalidName);
}

std::size_t UtilpDeviceLength(std::u16string_view name) noexcept {
    const std::u16string_view stem = name.substr(0, name.find(u'.'));
    const std::size_t length = stem.find_last_not_of(u' ') + 1; // nothing found: npos + 1 is 0
    return IsDevice(stem.substr(0, length)) ? length : 0;
}

bool UtilpIsBareFileName(std::u16string_view name) noexcept {
    return CanBeName(name) && UtilpDeviceLength(name) == 0;
}

} // namespace tvut
