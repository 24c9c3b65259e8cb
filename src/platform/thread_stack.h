// Stacks of threads.
#pragma once

#include <cstddef>

namespace tvut {

// Lets the calling thread keep 32 KB of its stack for what is called after the rest has overflowed, where the
// stack is at least ten times as large. Asks nobody, so it may be called within the loader.
void PlatformKeepStackForOverflow() noexcept;

} // namespace tvut
