// Encoded words of mail headers (RFC 2047).
#pragma once

#include <string>
#include <string_view>

namespace tvut {

// The text that a header's value stands for; folded lines may be in it. A word in an unknown character set or
// a damaged one stays as it stands; other 8-bit text is UTF-8 or in the process's code page. Throws
// std::bad_alloc.
std::u16string UtilpDecodeMimeWords(std::string_view value);

} // namespace tvut
