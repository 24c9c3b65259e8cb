// Like the entities: a name is sixteen bytes in lower case, made in registers where sixteen units may be
// read, and found in a table that the compiler made.
#include "text/html/tags.h"

#include "text/units.h"

#include <array>

namespace tvut {

namespace {

constexpr scTag tags[] = {
    {"h1", "", 0},
    {"h2", "", 0},
    {"h3", "", 0},
    {"h4", "", 0},
    {"h5", "", 0},
    {"h6", "", 0},
    {"/h1", "\r", 0},
    {"/h2", "\r", 0},
    {"/h3", "\r", 0},
    {"/h4", "\r", 0},
    {"/h5", "\r", 0},
    {"/h6", "\r", 0},
    {"table", "", 0},
    {"div", "", 0},
    {"ol", "", 0},
    {"tr", "", 0},
    {"ul", "", 0},
    {"thead", "", 0},
    {"tbody", "", 0},
    {"blockquote", "", 0},
    {"address", "", 0},
    {"pre", "", 0},
    {"li", "- ", 0},
    {"/p", "\r", 0},
    {"/div", "\r", 0},
    {"/ol", "\r", 0},
    {"/tr", "\r", 0},
    {"/ul", "\r", 0},
    {"/thead", "\r", 0},
    {"/tbody", "\r", 0},
    {"/blockquote", "\r", 0},
    {"/address", "\r", 0},
    {"/pre", "\r", 0},
    {"/li", "\r", 0},
    {"/td", " ", 0},
    {"/th", " ", 0},
    {"br", "\r", 0},
    {"hr", "\r", 0},
    {"head", "", 1},
    {"script", "", 1},
    {"iframe", "", 1},
    {"textarea", "", 1},
    {"select", "", 1},
    {"style", "", 1},
    {"/head", "", -1},
    {"/script", "", -1},
    {"/iframe", "", -1},
    {"/textarea", "", -1},
    {"/select", "", -1},
    {"/style", "", -1},
};

// A name as bytes in lower case, filled up with zeros. Units beyond ASCII become bytes that no name has.
constexpr std::size_t keySize = 16;
using Key = std::array<std::uint32_t, keySize / 4>;

constexpr std::uint8_t LowerByte(char16_t unit) {
    const bool isUpper = unit >= u'A' && unit <= u'Z';
    return static_cast<std::uint8_t>(unit >= 0x80 ? 0xFF : isUpper ? unit | 0x20 : unit);
}

template <class Name>
constexpr Key KeyOf(Name name) {
    Key key{};
    for (std::size_t at = 0; at < name.size(); ++at)
        key[at / 4] |= std::uint32_t{LowerByte(static_cast<char16_t>(name[at]))} << at % 4 * 8;
    return key;
}

// The same where enough units follow the name to fill a key.
Key LongKeyOf(std::u16string_view name) {
    const __m128i places = _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    const __m128i bytes = _mm_packus_epi16(UtilpLoadEight(name.data()), UtilpLoadEight(name.data() + 8));
    const __m128i upper = _mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8('A' - 1)),
                                        _mm_cmplt_epi8(bytes, _mm_set1_epi8('Z' + 1)));
    const __m128i lower = _mm_or_si128(bytes, _mm_and_si128(upper, _mm_set1_epi8(0x20)));
    const __m128i inside = _mm_cmplt_epi8(places, _mm_set1_epi8(static_cast<char>(name.size())));
    Key key;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(key.data()), _mm_and_si128(lower, inside));
    return key;
}

// Places by a hash of the first letters; neighbours hold what meets there.
struct scSlot {
    Key key{};
    std::size_t length = 0;
    const scTag* tag = nullptr;
};
constexpr std::size_t slotCount = 256;
using Slots = std::array<scSlot, slotCount>;

constexpr std::size_t SlotOf(const Key& key) {
    return (key[0] ^ key[1] * 0x85EBCA6Bu) * 0x9E3779B1u >> 24;
}

constexpr bool IsSame(const Key& a, const Key& b) {
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
}

constexpr Slots MakeSlots() {
    Slots slots{};
    for (const scTag& tag : tags) {
        const Key key = KeyOf(tag.name);
        std::size_t at = SlotOf(key);
        while (slots[at].tag)
            at = (at + 1) % slotCount;
        slots[at] = {key, tag.name.size(), &tag};
    }
    return slots;
}
constexpr Slots slots = MakeSlots();

} // namespace

const scTag* UtilpFindTag(std::u16string_view name, const char16_t* end) {
    if (name.size() > longestTagName)
        return nullptr;
    const bool isRoomy = static_cast<std::size_t>(end - name.data()) >= keySize;
    const Key key = isRoomy ? LongKeyOf(name) : KeyOf(name);
    std::size_t at = SlotOf(key);
    while (slots[at].tag && (slots[at].length != name.size() || !IsSame(slots[at].key, key)))
        at = (at + 1) % slotCount;
    return slots[at].tag;
}

} // namespace tvut
