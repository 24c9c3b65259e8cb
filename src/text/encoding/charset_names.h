// Character sets by the names that mail, HTML and XML give them.
#pragma once

#include <optional>
#include <string_view>

namespace tvut {

// The code page of a MIME charset name, without regard to case; nothing for an unknown one.
std::optional<unsigned> UtilpCodePageOfCharset(std::string_view name) noexcept;

} // namespace tvut
