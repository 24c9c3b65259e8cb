// 8-bit and 16-bit text of documents as UTF-16. All throw std::bad_alloc.
#pragma once

#include <string>
#include <string_view>

namespace tvut {

// By code page; 1200 and 1201 are UTF-16, little- and big-endian. What follows a NUL counts as text, too.
std::u16string UtilpDecodeText(unsigned codePage, std::string_view bytes);

std::u16string UtilpDecodeUtf16(std::string_view bytes, bool isBigEndian);

// UTF-8 when a text is well-formed as that, else the process's code page.
unsigned UtilpLooseCodePage(std::string_view bytes) noexcept;

// As UTF-8 when it is well-formed, else by the process's code page.
std::u16string UtilpDecodeLooseText(std::string_view bytes);

// Characters of Latin-1, ASCII among them.
std::u16string UtilpWidenLatin(std::string_view bytes);

} // namespace tvut
