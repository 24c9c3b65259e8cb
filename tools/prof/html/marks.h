// Noncharacters that carry through the conversion what it would fold or drop. A page
// that holds them itself loses them before.
#pragma once

namespace tool::html {

constexpr char16_t keptBlank = 0xFDD0;     // neither folded with others nor a place to break a line
constexpr char16_t wholeLine = 0xFDD1;     // begins a line that is not broken, and may be empty
constexpr char16_t hangingIndent = 0xFDD2; // where the lines begin that a broken line goes on in
constexpr char16_t nextCell = 0xFDD3;
constexpr char16_t leftGuillemet =
    0xFDD4; // these two are brackets to the conversion, which eats blanks beside them
constexpr char16_t rightGuillemet = 0xFDD5;

constexpr bool IsMark(char16_t c) {
    return c >= keptBlank && c <= rightGuillemet;
}

} // namespace tool::html
