// The GDI character set that a font needs to show a text, judged by the scripts of its characters.
#pragma once

#include <cstdint>

namespace tvut {

// The number of the character set: 0 when nothing particular is found. Several scripts in one text, or
// an ideograph, which several languages write, are decided by the process code page. The text is
// terminated and may begin at an odd address.
std::int32_t UtilpLikelyCharset(const char16_t* text, unsigned processCodePage) noexcept;

} // namespace tvut
