// The language of the host program's user interface, as its user has chosen it.
#pragma once

#include <cstdint>

namespace tvut {

// Keeps the language for the host program. Returns the registry's result, 0 on success.
std::int32_t UtilpSetLanguage(std::uint32_t language) noexcept;

// The kept language; where there is none, the primary language of the system's user interface.
std::uint32_t UtilpLanguage() noexcept;

} // namespace tvut
