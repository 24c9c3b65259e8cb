// Reads typed values as people write them, strictly: nothing may be left over and nothing may overflow.
// (The library's own readers stop at the first character that does not fit and let numbers wrap.)
#pragma once

#include <windows.h>

#include <optional>
#include <string_view>

namespace tool::prof {

std::optional<BOOL> ParseBool(std::string_view text);      // true false yes no on off 1 0, any case
std::optional<INT> ParseInt(std::string_view text);        // decimal, or x / 0x and hexadecimal digits
std::optional<UINT> ParseIntHex(std::string_view text);    // likewise
std::optional<INT64> ParseInt64(std::string_view text);    // likewise, to the unsigned 64-bit limit
std::optional<double> ParseDouble(std::string_view text);  // finite
std::optional<POINT> ParsePoint(std::string_view text);    // (x,y), the parentheses may be left out
std::optional<RECT> ParseRect(std::string_view text);      // (left,top,right,bottom)
std::optional<RECT> ParseRectLtwh(std::string_view text);  // (left,top,width,height)
std::optional<COLORREF> ParseColor(std::string_view text); // (red,green,blue), or x and BBGGRR

} // namespace tool::prof
