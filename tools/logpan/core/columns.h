// A line's parts as text, and the whole line as people and programs read it.
#ifndef LOGPAN_COLUMNS_H
#define LOGPAN_COLUMNS_H

#include "line.h"

namespace tool::logpan {

std::wstring timeText(const Line& line);      // 12:34:56.789
std::wstring threadText(const Line& line);    // 0000abcd, as in log files
std::wstring processorText(const Line& line); // 0f
std::wstring sequenceText(const Line& line);  // 7, or nothing

// The text behind its indentation, so many blanks a level; control characters are escaped, line ends before
// it left out.
std::wstring indentedText(const Line& line, std::size_t blanks = 1);

// All columns in one line, without a line end.
std::wstring plainLine(const Line& line);

// One JSON object; lone surrogates become U+FFFD.
std::wstring jsonLine(const Line& line);

} // namespace tool::logpan

#endif
