// The library stays loaded while the system may call into it.
//
// Who lets it go is, as a rule, in one of its functions at that moment. So it goes a second after the last
// holder, on a thread of the system's pool, when whoever that was has long returned.
#pragma once

#include "platform/owned.h"

namespace tvut {

// The library that this code is in, referred to once more.
clsLibrary PlatformOwnLibrary() noexcept;

// A holder of the library. Any thread.
class clsHeldLibrary {
  public:
    clsHeldLibrary() noexcept;
    ~clsHeldLibrary();
    clsHeldLibrary(const clsHeldLibrary&) = delete;
    clsHeldLibrary& operator=(const clsHeldLibrary&) = delete;
};

// What is called on the pool's thread before the library goes, to take from the system what may call into it.
void PlatformBeforeLibraryGoes(void (*call)() noexcept) noexcept;

} // namespace tvut
