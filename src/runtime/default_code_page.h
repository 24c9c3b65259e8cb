// The code page of all 8-bit text: of every A form, of files that are neither UTF-16 nor UTF-8, and of
// every new String. The process's own until it is set, and when it is set to 0. Any thread.
#pragma once

#include <cstdint>

namespace tvut {

unsigned UtilpCodePage() noexcept;
unsigned UtilpCodePageAsSet() noexcept; // also when that is 0
void UtilpSetCodePage(std::uint16_t codePage) noexcept;

} // namespace tvut
