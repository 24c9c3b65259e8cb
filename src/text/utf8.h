// UTF-8 (RFC 3629) to UTF-16.
#pragma once

#include <cstddef>
#include <string_view>

namespace tvut {

// True when every byte belongs to a well-formed sequence: no overlong forms, no surrogates, nothing
// beyond U+10FFFF, nothing cut off.
bool UtilpIsUtf8(std::string_view bytes) noexcept;

// Converts; each byte that belongs to no well-formed sequence becomes U+FFFD. The buffer has room for
// as many characters as there are bytes, which is always enough. Gives the number of characters.
std::size_t UtilpDecodeUtf8(std::string_view bytes, char16_t* characters) noexcept;

} // namespace tvut
