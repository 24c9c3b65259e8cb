// A line's parts as text, and the whole line as people and programs read it.
#pragma once

#include "line.h"

#include <string_view>

namespace tool::logpan {

inline constexpr std::wstring_view noTimeText = L"--:--:--.---";
inline constexpr std::size_t moduleWidth = 8; // characters; a longer module makes its line longer

std::wstring TimeText(const scLine& line);      // 12:34:56.789
std::wstring ThreadText(const scLine& line);    // 0000abcd, as in log files
std::wstring ProcessorText(const scLine& line); // 0f
std::wstring SequenceText(const scLine& line);  // 7, or nothing
std::wstring ProcessText(const scLine& line);   // kontor.exe 4711, or nothing

// The text after its indentation of that many blanks a level; control characters are escaped, line ends
// before it left out.
std::wstring IndentedText(const scLine& line, std::size_t blanks = 1);

// All columns in one line, without a line end.
std::wstring PlainLine(const scLine& line);

// One JSON object; lone surrogates become U+FFFD.
std::wstring JsonLine(const scLine& line);

} // namespace tool::logpan
