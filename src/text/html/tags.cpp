// Like the entities: a name is sixteen bytes in lower case, made in registers, and found in a table that the
// compiler made. No two known names share a place there, so one comparison decides, and what is found is
// chosen without a branch: which tag comes next is what the processor cannot guess.
#include "text/html/tags.h"

#include "text/units.h"

#include <algorithm>
#include <iterator>

namespace tvut {

namespace {

struct scMeaning {
    std::string_view name;
    std::string_view replacement;
    std::int8_t skips;
};

constexpr scMeaning meanings[] = {
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

struct scKnownTag {
    std::array<char, keySize> key{};
    std::uint8_t length = 0; // of the name: a unit 0 would look like the end
    scTag tag{};
};

// The first one is what names are that are not known.
using KnownTags = std::array<scKnownTag, std::size(meanings) + 1>;

constexpr KnownTags MakeKnownTags() {
    KnownTags known{};
    std::size_t at = 1;
    for (const scMeaning& meaning : meanings) {
        scKnownTag& tag = known[at++];
        std::copy(meaning.name.begin(), meaning.name.end(), tag.key.begin());
        tag.length = static_cast<std::uint8_t>(meaning.name.size());
        std::copy(meaning.replacement.begin(), meaning.replacement.end(), tag.tag.replacement.begin());
        tag.tag.length = static_cast<std::uint8_t>(meaning.replacement.size());
        tag.tag.skips = meaning.skips;
    }
    return known;
}
constexpr KnownTags knownTags = MakeKnownTags();

// The first four letters tell the known names apart. A factor that gives each of them a place of its own is
// found by trying.
using Places = std::array<std::uint8_t, 256>;

constexpr std::size_t PlaceOf(std::uint32_t letters, std::uint32_t factor) {
    return letters * factor >> 24;
}

constexpr std::uint32_t LettersOf(const scKnownTag& known) {
    std::uint32_t letters = 0;
    for (unsigned at = 0; at < 4; ++at)
        letters |= std::uint32_t{static_cast<std::uint8_t>(known.key[at])} << at * 8;
    return letters;
}

// Whether each name got a place of its own.
constexpr bool FillPlaces(std::uint32_t factor, Places& places) {
    places = {};
    for (std::size_t at = 1; at < knownTags.size(); ++at) {
        std::uint8_t& place = places[PlaceOf(LettersOf(knownTags[at]), factor)];
        if (place != 0)
            return false;
        place = static_cast<std::uint8_t>(at);
    }
    return true;
}

constexpr std::uint32_t FindFactor() {
    Places places{};
    std::uint32_t factor = 0x9E3779B1;
    while (!FillPlaces(factor, places))
        factor = factor * 0x85EBCA6B + 2;
    return factor;
}
constexpr std::uint32_t factor = FindFactor();

constexpr Places MakePlaces() {
    Places places{};
    FillPlaces(factor, places);
    return places;
}
constexpr Places places = MakePlaces();

// From the place a number of bytes before the middle on, there are as many bytes that are kept.
constexpr auto keptBytes = [] {
    std::array<std::uint8_t, 2 * keySize> bytes{};
    std::fill_n(bytes.begin(), keySize, std::uint8_t{0xFF});
    return bytes;
}();

__m128i LoadBytes(const void* bytes) {
    return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

// The bit that tells small letters from capital ones is set wherever the one above it is: of what it makes
// something else of, nothing becomes a letter, a digit or a slash but the capital letters.
__m128i KeyOf(const char16_t* name, std::size_t length) {
    const __m128i bytes = _mm_packus_epi16(UtilpLoadEight(name), UtilpLoadEight(name + 8));
    const __m128i lower = _mm_or_si128(bytes, _mm_and_si128(_mm_srli_epi16(bytes, 1), _mm_set1_epi8(0x20)));
    return _mm_and_si128(lower, LoadBytes(keptBytes.data() + keySize - length));
}

// Where as many units may be read as a key has.
const scTag& Find(const char16_t* name, std::size_t length) {
    const __m128i key = KeyOf(name, length);
    const std::size_t at = places[PlaceOf(static_cast<std::uint32_t>(_mm_cvtsi128_si32(key)), factor)];
    const scKnownTag& known = knownTags[at];
    const auto same =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(key, LoadBytes(known.key.data()))));
    const bool isKnown = ((same ^ 0xFFFFu) | (known.length ^ length)) == 0;
    return knownTags[at & (0 - std::size_t{isKnown})].tag;
}

} // namespace

const scTag& UtilpFindTag(std::u16string_view name, const char16_t* end) {
    if (name.size() > longestTagName)
        return knownTags[0].tag;
    if (static_cast<std::size_t>(end - name.data()) >= keySize)
        return Find(name.data(), name.size());
    std::array<char16_t, keySize> units{};
    std::copy(name.begin(), name.end(), units.begin());
    return Find(units.data(), name.size());
}

} // namespace tvut
