// Functions over terminated UTF-16 strings and over memory, at no more than the C runtime's cost.
//
// What is read is read in blocks of 16 bytes that lie in one page with a byte that has to be read, so
// that strings may end where readable memory does; what is written is exactly what belongs there.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tvut {

// Characters before the terminator; of the first count characters at most.
std::size_t UtilpLength(const char16_t* text);
std::size_t UtilpLength(const char16_t* text, std::size_t count);

// Memory may overlap.
void UtilpMove(void* to, const void* from, std::size_t bytes);
void UtilpFill(void* to, std::uint8_t byte, std::size_t bytes);

// By code unit, of at most count characters: less than, equal to or greater than 0.
int UtilpCompare(const char16_t* a, const char16_t* b, std::size_t count);

// The same, without regard to the case of ASCII letters, as far as both texts are ASCII. Both are
// advanced, and count lowered, to where the order shows or something else is met, which is undecided.
struct scOrder {
    bool decided;
    int order;
};
scOrder UtilpCompareAscii(const char16_t*& a, const char16_t*& b, std::size_t& count);

// The first or last place of a character, which may be the terminator, or of a part; null when missing.
const char16_t* UtilpFind(const char16_t* text, char16_t character);
const char16_t* UtilpFindLast(const char16_t* text, char16_t character);
const char16_t* UtilpFindPart(const char16_t* text, const char16_t* part);

// In place; blanks are U+0020 only.
void UtilpTrimLeft(char16_t* text);
void UtilpTrimRight(char16_t* text);

// Removes characters at a position, counted from 0, and puts others in; a position after the end
// changes nothing. The buffer has room for the result.
void UtilpStuff(char16_t* text, std::size_t position, std::size_t count, const char16_t* insertion);

// Keeps up to count characters from a position, counted from 0 and not after the end.
void UtilpKeep(char16_t* text, std::size_t position, std::size_t count);

} // namespace tvut
