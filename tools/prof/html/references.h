// Character references: &eacute; &#233; &#xE9; and all other names of HTML.
#pragma once

#include <string>
#include <string_view>

namespace tool::html {

// Where a reference stands: in an attribute, &copy=1 is part of an address.
enum class Place : bool { text, attribute };

// Appends a text with its references resolved; unknown ones stay as they are. Older names need no ; at their
// end. A number that is no character becomes U+FFFD; those of code page 1252 mean its characters.
void AppendResolved(std::u16string& result, std::u16string_view text, Place place);

} // namespace tool::html
