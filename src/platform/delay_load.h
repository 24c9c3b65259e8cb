// Libraries of the system that only few processes need. They are linked as ever, but the loader brings none
// of them in with this one: the first call of a function of theirs does. cmake/delay.cmake makes the import
// libraries for that.
#pragma once

namespace tvut {

// Whether a function of such a library may be called now: its library is there, or the thread may load it.
// Within the loader it may not, and at the process's end there is nobody left to load it for.
bool PlatformMayBind(const wchar_t* library) noexcept;

} // namespace tvut
