// The root element of XML or HTML.
#ifndef PROF_TOOL_MARKUP_ROOT_H
#define PROF_TOOL_MARKUP_ROOT_H

#include <string_view>

namespace tool::prof {

// Its name, behind declarations and comments; nothing when there is none in this part of the text.
std::string_view markupRoot(std::string_view text);

} // namespace tool::prof

#endif
