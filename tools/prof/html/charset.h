// Which character set a page is written in.
#pragma once

#include <cstddef>
#include <string_view>

namespace tool::html {

struct scCharset {
    unsigned codePage; // by the numbers of Windows; 1200 and 1201 are UTF-16 in either order of bytes
    std::size_t mark;  // bytes of the byte-order mark
};

// By the byte-order mark, else by what the page says at its beginning (<meta charset>, <meta http-equiv> or
// the XML declaration), else UTF-8 where the bytes are well-formed, else Windows-1252.
scCharset CharsetOf(std::string_view page);

} // namespace tool::html
