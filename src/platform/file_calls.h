// Calls on open files that throw clsException with the system's reason.
#pragma once

#include <cstddef>
#include <cstdint>
#include <windows.h>

namespace tvut {

// Throws unless a call of the system, the last one, has succeeded.
void PlatformRequire(BOOL succeeded, const char* what);

void PlatformMoveTo(HANDLE file, std::uint64_t position);
std::uint64_t PlatformSizeOf(HANDLE file);
void PlatformWriteAll(HANDLE file, const void* data, std::size_t bytes);

} // namespace tvut
