// A pattern as its parser understood it: a tree, kept in one vector.
#pragma once

#include "text/regex/char_set.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace tvut {

enum class RegExNodeKind : std::uint8_t {
    unit,         // one character as it stands
    set,          // one character of a set
    textStart,    // \A, and ^ outside the mode m
    textEnd,      // \z
    lastLineEnd,  // \Z, and $ outside the mode m: the end, or before the line feed that ends the text
    lineStart,    // ^ in the mode m
    lineEnd,      // $ in the mode m
    wordEdge,     // \b
    noWordEdge,   // \B
    sameAgain,    // \1
    sequence,     // children one after the other; none: the empty text
    alternatives, // any of the children, the first that leads to a match
    capture,      // (child)
    repeat,       // child, from least to most times
    lookAhead,    // (?=child)
    lookBehind,   // (?<=child)
    noLookAhead,  // (?!child)
    noLookBehind, // (?<!child)
    atomic,       // (?>child)
};

enum class RegExGreed : std::uint8_t { greedy, lazy, possessive };

struct scRegExNode {
    static constexpr std::uint32_t none = 0xFFFFFFFF;
    static constexpr std::uint32_t unlimited = 0xFFFFFFFF;

    RegExNodeKind kind;
    RegExGreed greed = RegExGreed::greedy; // of repeat
    bool ignoreCase = false;               // of sameAgain
    char16_t unit = 0;                     // of unit
    std::uint32_t number = 0;              // of set: its index; of capture and sameAgain: the group
    std::uint32_t least = 0, most = 0;     // of repeat
    std::uint32_t firstChild = none;
    std::uint32_t nextSibling = none;
    std::uint32_t offset = 0; // in the pattern
};

struct scRegExTree {
    std::vector<scRegExNode> nodes;
    std::vector<clsCharSet> sets; // complete, but not finished
    std::uint32_t root = scRegExNode::none;
    std::uint32_t groups = 0;

    const scRegExNode& operator[](std::uint32_t node) const { return nodes[node]; }
};

// Throws clsRegExError.
scRegExTree UtilpParseRegEx(std::u16string_view pattern);

} // namespace tvut
