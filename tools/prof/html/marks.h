// Noncharacters that carry through the conversion what it would fold or drop. Where a page holds them itself
// they become U+FFFD before.
#pragma once

namespace tool::html {

constexpr char16_t keptBlank = 0xFDD0;     // neither folded with others nor a place to break a line
constexpr char16_t wholeLine = 0xFDD1;     // begins a line that is not broken, and may be empty
constexpr char16_t hangingIndent = 0xFDD2; // where the lines begin that a broken line goes on in
constexpr char16_t nextCell = 0xFDD3;

// Brackets to the conversion, which takes out blanks beside them.
constexpr char16_t leftGuillemet = 0xFDD4;
constexpr char16_t rightGuillemet = 0xFDD5;

constexpr bool IsMark(char16_t c) {
    return c >= keptBlank && c <= rightGuillemet;
}

} // namespace tool::html
