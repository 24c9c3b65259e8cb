// Names are at most eight ASCII characters, so a name is a number of eight bytes and looking it up is one
// hash and mostly one comparison. The tables are made by the compiler. A name in the text is read with one
// load where eight units may be read.
#include "text/html/entities.h"

#include "text/units.h"

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

constexpr scEntity otherEntities[] = {{"amp", u'&'}, {"quot", u'"'}, {"lt", u'<'},
                                      {"gt", u'>'},  {"euro", 0x80}, {"apos", u'\''}};

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
    units[u'\t'] = Reference("#09");
    return units;
}

// A name of up to eight ASCII characters as a number, its first character lowest.
struct scEntityKey {
    std::uint32_t low = 0;
    std::uint32_t high = 0;
    std::uint32_t length = 0;

    constexpr bool operator==(const scEntityKey& other) const {
        return ((low ^ other.low) | (high ^ other.high) | (length ^ other.length)) == 0;
    }
};

template <class Name>
constexpr scEntityKey KeyOf(Name name) {
    scEntityKey key{.length = static_cast<std::uint32_t>(name.size())};
    for (std::size_t at = 0; at < name.size(); ++at) {
        const auto unit = static_cast<char16_t>(name[at]);
        (at < 4 ? key.low : key.high) |= (unit < 0x80 ? unit : 0xFFu) << at % 4 * 8;
    }
    return key;
}

// Masks for the bytes of a number, by the number of characters that a name has.
constexpr std::uint32_t bytesOfLow[] = {0, 0xFF, 0xFFFF, 0xFFFFFF, ~0u, ~0u, ~0u, ~0u, ~0u};
constexpr std::uint32_t bytesOfHigh[] = {0, 0, 0, 0, 0, 0xFF, 0xFFFF, 0xFFFFFF, ~0u};

// Units that no name has become bytes that no name has: 0, or 0x80 and more.
scEntityKey KeyOfEightUnits(const char16_t* name, std::size_t length) {
    const __m128i units = UtilpLoadEight(name);
    const __m128i bytes = _mm_packus_epi16(units, units);
    return {static_cast<std::uint32_t>(_mm_cvtsi128_si32(bytes)) & bytesOfLow[length],
            static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(bytes, 4))) & bytesOfHigh[length],
            static_cast<std::uint32_t>(length)};
}

// A table with a place for every name, found from its key; neighbours hold what meets there.
struct scSlot {
    scEntityKey key;
    char16_t unit = 0;
};
constexpr std::size_t slotCount = 512;
using Slots = std::array<scSlot, slotCount>;

constexpr std::size_t SlotOf(const scEntityKey& key) {
    return (key.low + key.high * 8) * 0x9E3779B1u >> 23;
}

constexpr void Insert(Slots& slots, scEntity entity) {
    const scEntityKey key = KeyOf(entity.name);
    std::size_t at = SlotOf(key);
    while (slots[at].unit != 0)
        at = (at + 1) % slotCount;
    slots[at] = {key, entity.unit};
}

constexpr Slots MakeSlots() {
    Slots slots{};
    for (const scEntity& entity : otherEntities) // first, since they are by far the most frequent ones
        Insert(slots, entity);
    for (unsigned at = 0; at < std::size(latinNames); ++at)
        Insert(slots, {latinNames[at], static_cast<char16_t>(firstLatin + at)});
    return slots;
}
constexpr Slots slots = MakeSlots();

} // namespace

constexpr std::array<scMasked, 0x100> maskedUnits = MakeMaskedUnits();

char16_t UtilpNamedUnit(std::u16string_view name, const char16_t* end) {
    const scEntityKey key = end - name.data() >= 8 ? KeyOfEightUnits(name.data(), name.size()) : KeyOf(name);
    std::size_t at = SlotOf(key);
    while (slots[at].key != key && slots[at].unit != 0)
        at = (at + 1) % slotCount;
    return slots[at].unit;
}

} // namespace tvut
