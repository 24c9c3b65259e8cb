// What the tags of a page mean to plain text.
//
// Like the entities: a name in lower case is made in registers, and found in a table that the compiler made.
// No two known names share a place there, so one comparison decides. Names of up to four units, which nearly
// all are, are one number each; the others are sixteen bytes. In line, so that the processor goes on with
// what is there before it has compared: which tag comes next is what it cannot guess.
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
constexpr std::size_t longestShortTagName = 4;

// As many units as may be read where a name begins; as bytes, units that no name has are bytes that no name
// has.
constexpr std::size_t tagWindow = 16;

namespace tagTable {

struct scMeaning {
    std::string_view name;
    std::string_view replacement;
    std::int8_t skips;
};

// All other tags mean nothing.
inline constexpr scMeaning meanings[] = {
    {"/h1", "\r", 0},    {"/h2", "\r", 0},    {"/h3", "\r", 0},         {"/h4", "\r", 0},
    {"/h5", "\r", 0},    {"/h6", "\r", 0},    {"li", "- ", 0},          {"/p", "\r", 0},
    {"/div", "\r", 0},   {"/ol", "\r", 0},    {"/tr", "\r", 0},         {"/ul", "\r", 0},
    {"/thead", "\r", 0}, {"/tbody", "\r", 0}, {"/blockquote", "\r", 0}, {"/address", "\r", 0},
    {"/pre", "\r", 0},   {"/li", "\r", 0},    {"/td", " ", 0},          {"/th", " ", 0},
    {"br", "\r", 0},     {"hr", "\r", 0},     {"head", "", 1},          {"script", "", 1},
    {"iframe", "", 1},   {"textarea", "", 1}, {"select", "", 1},        {"style", "", 1},
    {"/head", "", -1},   {"/script", "", -1}, {"/iframe", "", -1},      {"/textarea", "", -1},
    {"/select", "", -1}, {"/style", "", -1},
};

constexpr scTag TagOf(const scMeaning& meaning) {
    scTag tag{};
    tag.skips = meaning.skips;
    tag.lineEnds = meaning.replacement == "\r";
    if (tag.lineEnds == 0) {
        std::copy(meaning.replacement.begin(), meaning.replacement.end(), tag.replacement.begin());
        tag.length = static_cast<std::uint8_t>(meaning.replacement.size());
    }
    return tag;
}

// The first four bytes of a name, which tell the known names apart, filled up with zeros.
constexpr std::uint32_t FirstLettersOf(std::string_view name) {
    std::uint32_t letters = 0;
    for (std::size_t at = 0; at < std::min<std::size_t>(name.size(), 4); ++at)
        letters |= std::uint32_t{static_cast<std::uint8_t>(name[at])} << at * 8;
    return letters;
}

// A unit 0 would look like the end of a name, so the length counts, too.
struct scShortTag {
    std::uint32_t letters = 0; // the last one is the highest byte
    std::uint8_t length = 0;
    scTag tag{};

    static constexpr unsigned placeBits = 6;
    static constexpr bool Knows(std::string_view name) { return name.size() <= longestShortTagName; }
    static constexpr std::uint32_t LettersOf(std::string_view name) {
        return FirstLettersOf(name) << (32 - 8 * name.size());
    }
    constexpr scShortTag() = default;
    constexpr explicit scShortTag(const scMeaning& meaning)
        : letters(LettersOf(meaning.name)), length(static_cast<std::uint8_t>(meaning.name.size())),
          tag(TagOf(meaning)) {}
};

template <class Tag>
using Table = std::array<Tag, 1u << Tag::placeBits>;

template <class Tag>
constexpr std::size_t PlaceOf(std::uint32_t letters, std::uint32_t factor) {
    return letters * factor >> (32 - Tag::placeBits);
}

// Whether each name got a place of its own.
template <class Tag>
constexpr bool Fill(std::uint32_t factor, Table<Tag>& table) {
    table = {};
    for (const scMeaning& meaning : meanings) {
        if (!Tag::Knows(meaning.name))
            continue;
        Tag& tag = table[PlaceOf<Tag>(Tag::LettersOf(meaning.name), factor)];
        if (tag.length != 0)
            return false;
        tag = Tag(meaning);
    }
    return true;
}

// A factor that gives each name a place of its own is found by trying.
template <class Tag>
constexpr std::uint32_t FindFactor() {
    std::uint32_t factor = 0x9E3779B1;
    for (Table<Tag> table; !Fill(factor, table);)
        factor = factor * 0x85EBCA6B + 2;
    return factor;
}
template <class Tag>
inline constexpr std::uint32_t factor = FindFactor<Tag>();

template <class Tag>
inline constexpr Table<Tag> table = [] {
    Table<Tag> filled;
    Fill(factor<Tag>, filled);
    return filled;
}();

template <class Tag>
const Tag& At(std::uint32_t letters) {
    return table<Tag>[PlaceOf<Tag>(letters, factor<Tag>)];
}

} // namespace tagTable

// By a name of one to four units, with the slash of a closing tag. Names compare without regard to the case
// of ASCII letters. Null for a tag that means nothing.
//
// The bit that tells small letters from capital ones is set wherever the one above it is: of what it makes
// something else of, nothing becomes a letter, a digit or a slash but the capital letters.
inline const scTag* UtilpFindShortTag(const char16_t* name, std::size_t length) {
    const __m128i units = UtilpLoadFour(name);
    auto letters = static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(units, units)));
    letters = (letters | (letters >> 1 & 0x20202020)) << (32 - 8 * length);
    const auto& known = tagTable::At<tagTable::scShortTag>(letters);
    return known.letters == letters && known.length == length ? &known.tag : nullptr;
}

// By a name of any length, in a window of units and these as bytes; it ends at white space, or at the first
// of the brackets that close, a bit for each in the window.
const scTag* UtilpFindTag(const char16_t* window, __m128i bytes, unsigned closes);

} // namespace tvut
