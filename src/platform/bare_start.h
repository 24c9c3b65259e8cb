// Finding the system's calls, in ordinary times: nothing of platform/bare_system may be used before.
#pragma once

namespace tvut {

// Finds the calls in the system's library, which is always there. False: this system lacks one of them. Any
// thread, any number of times.
bool PlatformFindBareSystem() noexcept;

} // namespace tvut
