// What the memory for exceptions needs to know of threads; see exception_memory.cpp.
#pragma once

namespace tvut {

// The library is loaded. False when the process has no room left for what each thread keeps.
bool PlatformExceptionsBegin() noexcept;

// A thread ends, or the library is unloaded: what the calling thread holds is released.
void PlatformThreadEnds() noexcept;
void PlatformExceptionsEnd() noexcept;

} // namespace tvut
