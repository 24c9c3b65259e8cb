// What the loader is doing, where it may forbid to wait.
#pragma once

namespace tvut {

// Whether the calling thread holds the loader's lock: it is in a DllMain, or below one. What waits there for
// another thread hangs as soon as that one loads a library, begins or ends.
bool PlatformHoldsLoaderLock() noexcept;

// Whether the process is being shut down: all other threads are gone, wherever they were.
bool PlatformProcessEnds() noexcept;

// Whether the library of windows is loaded and has started in this process. At the process's start it may be
// loaded and not have started yet.
bool PlatformWindowsAreUp() noexcept;

} // namespace tvut
