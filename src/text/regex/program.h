// A compiled pattern: instructions for the matcher, one after the other.
#pragma once

#include "text/regex/char_set.h"
#include "text/regex/node.h"

#include <string>
#include <vector>

namespace tvut {

enum class RegExOp : std::uint8_t {
    literal,   // a text: operand is where it begins in literals, length how long it is
    set,       // one character of the set operand
    run,       // characters of the set operand, at least least and at most most, by greed
    fork,      // goes on at operand; if that fails, at other
    jump,      // goes on at operand
    save,      // keeps the place in slot operand
    saveBoth,  // moves slot other to slot operand, and keeps the place in the next slot
    sameAgain, // what the group between slots operand and operand + 1 matched
    sameAgainIgnoringCase,
    textStart,
    textEnd,
    lastLineEnd,
    lineStart,
    lineEnd,
    wordEdge,
    noWordEdge,
    stepBack,   // operand characters back
    loopStart,  // begins to count in slots operand (rounds) and operand + 1 (where the last one began)
    loopNext,   // another round, at the next instruction, or on at other, by least, most and greed
    loopRound,  // counts a round of the loop at operand
    guard,      // begins an assertion or an atomic group that keeps its state in slots operand and + 1
    guardNot,   // the same, where the contents must not match: goes on at other when they do not
    accept,     // ends an atomic group: there is no way back into it
    acceptHere, // ends an assertion, and goes back to where it began
    refuse,     // ends an assertion that should not have matched
    match,
};

struct scRegExInstruction {
    RegExOp op;
    RegExGreed greed = RegExGreed::greedy;
    std::uint32_t operand = 0;
    std::uint32_t length = 0;
    std::uint32_t other = 0;
    std::uint32_t least = 0, most = 0;
    // Of a run: the instruction with the literal that must follow it; nothing else can.
    std::uint32_t follower = scRegExNode::none;
};

struct scRegExProgram {
    std::vector<scRegExInstruction> code;
    std::vector<clsCharSet> sets;
    std::u16string literals;
    std::uint32_t groups = 0;
    std::uint32_t slots = 0; // two for each group and the whole, then what loops and assertions need

    // Where a match can begin: at the text's start only, or with this text, or in this set.
    bool fromTextStart = false;
    std::u16string prefix;
    std::optional<clsCharSet> firstUnits;

    std::u16string_view Literal(const scRegExInstruction& instruction) const {
        return std::u16string_view(literals).substr(instruction.operand, instruction.length);
    }
    // As much of a literal as a search looks for: for more of it a search would be slow without the
    // matcher's count of steps knowing. Whoever finds it has the rest still to compare.
    std::u16string_view Landmark(const scRegExInstruction& instruction) const {
        return Literal(instruction).substr(0, 16);
    }
};

// Throws clsRegExError.
scRegExProgram UtilpCompileRegEx(scRegExTree&& tree);

} // namespace tvut
