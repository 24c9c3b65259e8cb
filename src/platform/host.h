// The process that the library is loaded into.
#pragma once

#include <string_view>

namespace tvut {

// The host executable's file name without folder and extension, as it is written.
std::wstring_view PlatformHostTag();

// Notes the host's name; called once, when the library is loaded.
void PlatformNoteHost() noexcept;

} // namespace tvut
