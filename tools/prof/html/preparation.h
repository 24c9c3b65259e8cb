// Puts a page into the form that the library's conversion to plain text reads well.
//
// The conversion is exact about what it knows: <a href="..."> in this case and these quotation marks, end
// tags of paragraphs and items, Latin-1 names. Pages are not. Here tags of any writing are read, what HTML
// closes by itself is closed, references are resolved, and lists, tables and preformatted text become lines
// of their own; what is written is the small language of page_writer.h.
#pragma once

#include <string>
#include <string_view>

namespace tool::html {

enum class Links {
    none,     // labels alone
    inLine,   // label [address]
    numbered, // label [1], and the addresses at the end
};

// The page in UTF-16 without NULs; what is not well-formed is read as browsers read it. Cost and memory are
// proportional to the page's length. Throws std::bad_alloc.
std::u16string PreparedPage(std::u16string_view page, Links links);

} // namespace tool::html
