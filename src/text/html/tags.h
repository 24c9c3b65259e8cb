// What the tags of a page mean to plain text.
//
// Like the entities: a name is sixteen bytes in lower case, made in registers, and found in a table that the
// compiler made. No two known names share a place there, so one comparison decides. In line, so that the
// processor goes on with what is there before it has compared: which tag comes next is what it cannot guess,
// but that it is known is.
#pragma once

#include "text/units.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace tvut {

struct scTag {
    static constexpr std::size_t most = 2; // units that stand in a tag's place

    std::array<char16_t, most> replacement;
    std::uint8_t length;   // of the replacement
    std::uint8_t lineEnds; // 1 where a line end stands in its place instead
    std::int8_t skips;     // 1: what follows is not shown; -1: it is again
};

constexpr std::size_t longestTagName = 11;

// What a tag is found by: as many units as may be read where its name begins, as bytes. Units that no name
// has become bytes that no name has.
constexpr std::size_t tagWindow = 16;
inline __m128i UtilpLoadTag(const char16_t* name) {
    return _mm_packus_epi16(UtilpLoadEight(name), UtilpLoadEight(name + 8));
}

namespace tagTable {

struct scMeaning {
    std::string_view name;
    std::string_view replacement;
    std::int8_t skips;
};

inline constexpr scMeaning meanings[] = {
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
    // These mean nothing, but are frequent.
    {"a", "", 0},
    {"/a", "", 0},
    {"b", "", 0},
    {"/b", "", 0},
    {"i", "", 0},
    {"/i", "", 0},
    {"p", "", 0},
    {"em", "", 0},
    {"/em", "", 0},
    {"td", "", 0},
    {"th", "", 0},
    {"img", "", 0},
    {"span", "", 0},
    {"/span", "", 0},
    {"font", "", 0},
    {"/font", "", 0},
    {"strong", "", 0},
    {"/strong", "", 0},
};

// A name as bytes in lower case, filled up with zeros.
constexpr std::size_t keySize = tagWindow;

struct alignas(32) scKnownTag {
    std::array<char, keySize> key{};
    std::uint8_t length = 0; // of the name: a unit 0 would look like the end
    scTag tag{};
};

// The first one has no name.
using KnownTags = std::array<scKnownTag, std::size(meanings) + 1>;

constexpr KnownTags MakeKnownTags() {
    KnownTags known{};
    std::size_t at = 1;
    for (const scMeaning& meaning : meanings) {
        scKnownTag& tag = known[at++];
        std::copy(meaning.name.begin(), meaning.name.end(), tag.key.begin());
        tag.length = static_cast<std::uint8_t>(meaning.name.size());
        tag.tag.lineEnds = meaning.replacement == "\r";
        if (tag.tag.lineEnds == 0) {
            std::copy(meaning.replacement.begin(), meaning.replacement.end(), tag.tag.replacement.begin());
            tag.tag.length = static_cast<std::uint8_t>(meaning.replacement.size());
        }
        tag.tag.skips = meaning.skips;
    }
    return known;
}
inline constexpr KnownTags knownTags = MakeKnownTags();

// The first four letters tell the known names apart. A factor that gives each of them a place of its own is
// found by trying.
using Places = std::array<std::uint8_t, 512>;

constexpr std::size_t PlaceOf(std::uint32_t letters, std::uint32_t factor) {
    return letters * factor >> 23;
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
inline constexpr std::uint32_t factor = FindFactor();

constexpr Places MakePlaces() {
    Places places{};
    FillPlaces(factor, places);
    return places;
}
inline constexpr Places places = MakePlaces();

// From the place a number of bytes before the middle on, there are as many bytes that are kept.
inline constexpr auto keptBytes = [] {
    std::array<std::uint8_t, 2 * keySize> bytes{};
    std::fill_n(bytes.begin(), keySize, std::uint8_t{0xFF});
    return bytes;
}();

} // namespace tagTable

// By the length of its name, at most that of the window, with the slash of a closing tag. Names compare
// without regard to the case of ASCII letters. Null for a tag that means nothing.
//
// The bit that tells small letters from capital ones is set wherever the one above it is: of what it makes
// something else of, nothing becomes a letter, a digit or a slash but the capital letters.
inline const scTag* UtilpFindTag(__m128i window, std::size_t nameLength) {
    const auto load = [](const void* bytes) { return _mm_loadu_si128(static_cast<const __m128i*>(bytes)); };
    const __m128i lower = _mm_or_si128(window, _mm_and_si128(_mm_srli_epi16(window, 1), _mm_set1_epi8(0x20)));
    const __m128i key =
        _mm_and_si128(lower, load(tagTable::keptBytes.data() + tagTable::keySize - nameLength));
    const std::size_t place =
        tagTable::PlaceOf(static_cast<std::uint32_t>(_mm_cvtsi128_si32(key)), tagTable::factor);
    const tagTable::scKnownTag& known = tagTable::knownTags[tagTable::places[place]];
    const int same = _mm_movemask_epi8(_mm_cmpeq_epi8(key, load(known.key.data())));
    return same == 0xFFFF && known.length == nameLength ? &known.tag : nullptr;
}

} // namespace tvut
