// The root element of XML or HTML.
#pragma once

#include <string_view>

namespace tool::prof {

// Its name, after declarations and comments; nothing when there is none in this part of the text.
std::string_view MarkupRoot(std::string_view text);

} // namespace tool::prof
