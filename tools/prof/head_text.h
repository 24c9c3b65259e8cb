// The beginning of a file as ASCII, in whatever encoding it is.
#pragma once

#include <string>
#include <string_view>

namespace tool::prof {

// Decodes UTF-16 with a byte-order mark, or without one where its line ends, "=" and brackets are, as the
// library does; everything else counts as 8-bit text. Characters beyond ASCII become '\x80'.
std::string HeadText(std::string_view bytes);

// Whether the beginning of a file without a mark is UTF-16.
bool LooksLikeUtf16(std::string_view bytes);

} // namespace tool::prof
