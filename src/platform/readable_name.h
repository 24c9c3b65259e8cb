// Names as linkers know them, in words that a reader of C++ knows: _Z6renderR4Page is render(Page&).
#pragma once

#include <span>
#include <string_view>

namespace tvut {

// The readable form of a name that this compiler has mangled, in the buffer, cut at its end; any other name
// as it is. Allocates nothing.
std::string_view PlatformReadableName(std::string_view linked, std::span<char> buffer) noexcept;

} // namespace tvut
