// The tables are made by the compiler.
#include "text/html/entities.h"

#include <iterator>
#include <string_view>

namespace tvut {

namespace {

struct scEntity {
    std::string_view name;
    char16_t unit;
};

// U+00A0 to U+00FF in order, then the others. The euro sign stands where code page 1252 has it, which
// is what texts of this library use; U+20AC is written as a number.
constexpr std::string_view latinNames[] = {
    "nbsp",   "iexcl",  "cent",   "pound",  "curren", "yen",    "brvbar", "sect",   "uml",    "copy",
    "ordf",   "laquo",  "not",    "shy",    "reg",    "macr",   "deg",    "plusmn", "sup2",   "sup3",
    "acute",  "micro",  "para",   "middot", "cedil",  "sup1",   "ordm",   "raquo",  "frac14", "frac12",
    "frac34", "iquest", "Agrave", "Aacute", "Acirc",  "Atilde", "Auml",   "Aring",  "AElig",  "Ccedil",
    "Egrave", "Eacute", "Ecirc",  "Euml",   "Igrave", "Iacute", "Icirc",  "Iuml",   "ETH",    "Ntilde",
    "Ograve", "Oacute", "Ocirc",  "Otilde", "Ouml",   "times",  "Oslash", "Ugrave", "Uacute", "Ucirc",
    "Uuml",   "Yacute", "THORN",  "szlig",  "agrave", "aacute", "acirc",  "atilde", "auml",   "aring",
    "aelig",  "ccedil", "egrave", "eacute", "ecirc",  "euml",   "igrave", "iacute", "icirc",  "iuml",
    "eth",    "ntilde", "ograve", "oacute", "ocirc",  "otilde", "ouml",   "divide", "oslash", "ugrave",
    "uacute", "ucirc",  "uuml",   "yacute", "thorn",  "yuml"};
static_assert(std::size(latinNames) == 0x60);
constexpr unsigned firstLatin = 0xA0;

// The two numbers are those that are as frequent as names.
constexpr scEntity otherEntities[] = {{"amp", u'&'},  {"quot", u'"'},  {"lt", u'<'},   {"gt", u'>'},
                                      {"euro", 0x80}, {"apos", u'\''}, {"#39", u'\''}, {"#09", u'\t'}};

constexpr scMasked Reference(std::string_view name) {
    scMasked masked{};
    std::size_t at = 0;
    masked.text[at++] = u'&';
    for (const char c : name)
        masked.text[at++] = static_cast<char16_t>(c);
    masked.text[at++] = u';';
    masked.length = static_cast<std::uint8_t>(at);
    return masked;
}

constexpr scMasked Number(unsigned unit) {
    constexpr std::string_view digits = "0123456789abcdef";
    const char name[] = {'#', 'x', '0', '0', digits[unit >> 4], digits[unit & 15]};
    return Reference(std::string_view(name, sizeof name));
}

constexpr scMasked Itself(unsigned unit) {
    scMasked masked{};
    masked.text[0] = static_cast<char16_t>(unit);
    masked.length = 1;
    return masked;
}

// The apostrophe is read as a reference but never written as one.
constexpr std::array<scMasked, 0x100> MakeMaskedUnits() {
    std::array<scMasked, 0x100> units{};
    for (unsigned unit = 0; unit < units.size(); ++unit)
        units[unit] = unit < 0x80         ? Itself(unit)
                      : unit < firstLatin ? Number(unit)
                                          : Reference(latinNames[unit - firstLatin]);
    for (const scEntity& entity : otherEntities) {
        if (entity.unit != u'\'')
            units[entity.unit] = Reference(entity.name);
    }
    return units;
}

// The key of a name, with the semicolon. A unit that no name has becomes a byte that no name has.
template <class Name>
constexpr scNameKey KeyOf(Name name) {
    scNameKey key;
    for (std::size_t at = 0; at <= name.size(); ++at) {
        const auto unit = at < name.size() ? static_cast<char16_t>(name[at]) : u';';
        (at < 4 ? key.low : key.high) |= (unit < 0x80 ? unit : 0xFFu) << at % 4 * 8;
    }
    return key;
}

constexpr void Insert(scNamedUnits& named, std::string_view name, unsigned unit) {
    const std::size_t slot = scNamedUnits::SlotOf(KeyOf(name));
    if (named.units[slot] != 0)
        throw "two names meet"; // at compile time: the factor of SlotOf is to be chosen anew
    named.keys[slot] = KeyOf(name);
    named.units[slot] = static_cast<std::uint8_t>(unit);
}

constexpr scNamedUnits MakeNamedUnits() {
    scNamedUnits named{};
    for (const scEntity& entity : otherEntities)
        Insert(named, entity.name, entity.unit);
    for (unsigned at = 0; at < std::size(latinNames); ++at)
        Insert(named, latinNames[at], firstLatin + at);
    return named;
}

} // namespace

constexpr std::array<scMasked, 0x100> maskedUnits = MakeMaskedUnits();
constexpr scNamedUnits namedUnits = MakeNamedUnits();

char16_t UtilpNamedUnit(std::u16string_view name, const char16_t* end) {
    return end - name.data() >= 8 ? UtilpNamedUnit(UtilpNameBytes(name.data()), name.size())
                                  : UtilpNamedUnit(KeyOf(name));
}

} // namespace tvut
