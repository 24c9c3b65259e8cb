// Letters and their other case, one unit for one unit: Latin, Greek, Cyrillic, Armenian and full width.
//
// Fixed tables, so that a pattern matches the same on every system. Letters whose other case is of
// another length, or depends on the language (dotless i), have none here.
#pragma once

#include <span>

namespace tvut {

struct scLetterPairs {
    char16_t firstUpper;
    char16_t lastUpper;
    char16_t distance; // from upper to lower case
    bool alternating;  // upper, lower, upper, lower: only every other one is an upper-case letter
};

std::span<const scLetterPairs> UtilpLetterPairs();

// The letter itself when it has no other case.
char16_t UtilpOtherCase(char16_t letter);

} // namespace tvut
