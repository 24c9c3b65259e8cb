// Conversion between 8-bit text in a code page and UTF-16.
//
// Characters that have no counterpart become the code page's default character; nothing fails for
// its contents. An unknown code page counts as the process's own.
#pragma once

#include <cstddef>
#include <string_view>

namespace tvut {

constexpr unsigned codePageUtf8 = 65001;

// The code page of the process, as it was when the library was loaded.
unsigned PlatformProcessCodePage() noexcept;

// The code page of console programs, which old archives write names in.
unsigned PlatformOemCodePage() noexcept;

// Converts into a buffer with room for as many characters as there are bytes, which is always
// enough. Gives the number of characters written.
std::size_t PlatformDecode(unsigned codePage, std::string_view bytes, char16_t* characters);

// The number of bytes that a text takes in a code page, and the conversion into a buffer of that
// size. Both give the number of bytes.
std::size_t PlatformEncodedSize(unsigned codePage, std::u16string_view text);
std::size_t PlatformEncode(unsigned codePage, std::u16string_view text, char* bytes, std::size_t size);

// The length of the longest beginning of an 8-bit text that has at most `bytes` bytes and ends with a whole
// character.
std::size_t PlatformWholeCharacters(unsigned codePage, std::string_view text, std::size_t bytes);

} // namespace tvut
