// UTF-8 (RFC 3629) to UTF-16 and back.
#pragma once

#include "text/scan.h"

#include <cstddef>
#include <string_view>

namespace tvut {

// True when every byte belongs to a well-formed sequence: no overlong forms, no surrogates, nothing
// beyond U+10FFFF, nothing cut off.
bool UtilpIsUtf8(std::string_view bytes) noexcept;

// Converts; each byte that belongs to no well-formed sequence becomes U+FFFD. The buffer has room for
// as many characters as there are bytes, which is always enough. Gives the number of characters.
std::size_t UtilpDecodeUtf8(std::string_view bytes, char16_t* characters) noexcept;

constexpr bool UtilpIsHighSurrogate(char16_t c) {
    return c >= 0xD800 && c < 0xDC00;
}

// Whether each surrogate has its other half.
bool UtilpIsUtf16(std::u16string_view text) noexcept;

// No character of UTF-16 takes more bytes.
constexpr std::size_t longestUtf8 = 3;

namespace detail {
std::size_t LengthInUtf8(std::u16string_view text) noexcept;
std::size_t EncodeUtf8(std::u16string_view text, char* bytes) noexcept;
} // namespace detail

// How many bytes UtilpEncodeUtf8 writes.
inline std::size_t UtilpUtf8Length(std::u16string_view text) noexcept {
    const std::size_t ascii = UtilpLengthBefore<scNotAscii>(text);
    return ascii == text.size() ? ascii : ascii + detail::LengthInUtf8(text.substr(ascii));
}

// Converts; a surrogate without its other half becomes U+FFFD. There is room for longestUtf8 bytes for
// each character. Gives the number of bytes.
inline std::size_t UtilpEncodeUtf8(std::u16string_view text, char* bytes) noexcept {
    return UtilpNarrowAscii(bytes, text) ? text.size() : detail::EncodeUtf8(text, bytes);
}

} // namespace tvut
