// A row is a run of upper case letters and the distance to their lower case; in an alternating run every
// second letter is a lower case one. One subtraction, taken as unsigned, tells whether a letter lies in a
// run.
#include "text/regex/letter_pairs.h"

namespace tvut {

namespace {

// The pair of y with diaeresis stands the other way round: its lower case comes first.
constexpr scLetterPairs pairs[] = {
    {u'A', u'Z', 0x20, false},     {0x00C0, 0x00D6, 0x20, false}, {0x00D8, 0x00DE, 0x20, false},
    {0x00FF, 0x00FF, 0x79, false}, {0x0100, 0x012E, 1, true},     {0x0132, 0x0136, 1, true},
    {0x0139, 0x0147, 1, true},     {0x014A, 0x0176, 1, true},     {0x0179, 0x017D, 1, true},
    {0x01A0, 0x01A4, 1, true},     {0x01AF, 0x01AF, 1, false},    {0x01CD, 0x01DB, 1, true},
    {0x01DE, 0x01EE, 1, true},     {0x01F8, 0x021E, 1, true},     {0x0222, 0x0232, 1, true},
    {0x0246, 0x024E, 1, true},     {0x0386, 0x0386, 0x26, false}, {0x0388, 0x038A, 0x25, false},
    {0x038C, 0x038C, 0x40, false}, {0x038E, 0x038F, 0x3F, false}, {0x0391, 0x03A1, 0x20, false},
    {0x03A3, 0x03AB, 0x20, false}, {0x0400, 0x040F, 0x50, false}, {0x0410, 0x042F, 0x20, false},
    {0x0460, 0x0480, 1, true},     {0x048A, 0x04BE, 1, true},     {0x04C0, 0x04C0, 0x0F, false},
    {0x04C1, 0x04CD, 1, true},     {0x04D0, 0x052E, 1, true},     {0x0531, 0x0556, 0x30, false},
    {0x1E00, 0x1E94, 1, true},     {0x1EA0, 0x1EFE, 1, true},     {0xFF21, 0xFF3A, 0x20, false},
};

} // namespace

std::span<const scLetterPairs> UtilpLetterPairs() {
    return pairs;
}

char16_t UtilpOtherCase(char16_t letter) {
    for (const scLetterPairs& pair : pairs) {
        const unsigned fromUpper = static_cast<unsigned>(letter) - pair.firstUpper;
        const unsigned fromLower = fromUpper - pair.distance;
        const unsigned span = static_cast<unsigned>(pair.lastUpper) - pair.firstUpper;
        if (fromUpper <= span && !(pair.alternating && fromUpper % 2 != 0))
            return static_cast<char16_t>(letter + pair.distance);
        if (fromLower <= span && !(pair.alternating && fromLower % 2 != 0))
            return static_cast<char16_t>(letter - pair.distance);
    }
    return letter;
}

} // namespace tvut
