// Impersonations: threads that act for another user for a while. Each thread's form a stack.
#pragma once

#include <cstdint>
#include <windows.h>

namespace tvut {

// Lets the calling thread act by a copy of a token, null for the process's own. Returns the handle of the
// impersonation; throws clsException with the system's error, std::bad_alloc, and the thread is as it was.
std::uint32_t UtilpImpersonate(HANDLE token);

// Takes the calling thread's newest impersonation off; the thread has the token that it had before. False
// for any other handle. Ends the process when the system will not give that token back.
bool UtilpEndImpersonation(std::uint32_t handle) noexcept;

// Forgets the impersonations of the calling thread, which ends with them.
void UtilpForgetImpersonations() noexcept;

} // namespace tvut
