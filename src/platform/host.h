// The process that the library is loaded into.
#pragma once

#include <string_view>

namespace tvut {

// The host executable's file name without folder and extension, as it is written. Terminated neither
// by NUL nor otherwise.
std::u16string_view PlatformHostTag() noexcept;

// The host executable's full file name, terminated.
const char16_t* PlatformHostFileName() noexcept;

// Notes the host's name; called once, when the library is loaded.
void PlatformNoteHost() noexcept;

} // namespace tvut
