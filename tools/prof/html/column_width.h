// How many columns of a terminal a character takes.
#pragma once

namespace tool::html {

// 0 for what is put upon the character before it, 2 for East Asian characters and pictures, else 1.
unsigned ColumnsOf(char32_t character);

} // namespace tool::html
