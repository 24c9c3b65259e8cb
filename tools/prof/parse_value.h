// Reads typed values as people write them, strictly: nothing may be left over and nothing may overflow.
// (The library's own readers stop at the first character that does not fit and let numbers wrap.)
#ifndef PROF_TOOL_PARSE_VALUE_H
#define PROF_TOOL_PARSE_VALUE_H

#include <windows.h>

#include <optional>
#include <string_view>

namespace tool::prof {

std::optional<BOOL> parseBool(std::string_view text);      // true false yes no on off 1 0, any case
std::optional<INT> parseInt(std::string_view text);        // decimal, or x / 0x and hexadecimal digits
std::optional<UINT> parseIntHex(std::string_view text);    // likewise
std::optional<INT64> parseInt64(std::string_view text);    // likewise, to the unsigned 64-bit limit
std::optional<double> parseDouble(std::string_view text);  // finite
std::optional<POINT> parsePoint(std::string_view text);    // (x,y), the parentheses may be left out
std::optional<RECT> parseRect(std::string_view text);      // (left,top,right,bottom)
std::optional<RECT> parseRectLTWH(std::string_view text);  // (left,top,width,height)
std::optional<COLORREF> parseColor(std::string_view text); // (red,green,blue), or x and BBGGRR

} // namespace tool::prof

#endif
