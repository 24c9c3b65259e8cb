// Options of the process that the profile store obeys.
#pragma once

#include <cstdint>

namespace tvut {

// The code page of all 8-bit text; the process's own until it is set. Any thread.
unsigned ProfpCodePage() noexcept;
void ProfpSetCodePage(std::uint16_t codePage) noexcept;

} // namespace tvut
