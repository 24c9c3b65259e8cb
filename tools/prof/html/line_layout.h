// The last step of a page: what the conversion has made, in lines as people read them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool::html {

constexpr std::size_t leastWidth = 10; // columns

// The conversion's text with its marks resolved and LF at the end of each line. Lines are broken between
// words, and between East Asian characters, so that they have at most so many columns; 0 breaks none. A word
// that is wider stands in a line of its own. Cells of neighbouring rows stand below each other where a line
// has room for them.
std::u16string LaidOut(std::u16string_view text, std::size_t width);

} // namespace tool::html
