// Libraries that are loaded, found where they lie instead of by name: to ask the loader for a name that is
// not loaded makes some systems look for its file.
#pragma once

#include "platform/owned.h"

#include <string_view>

namespace tvut {

// The one that the loader has loaded at an address, which is where it begins; none otherwise.
clsLibrary PlatformLibraryAt(const void* base) noexcept;

// The name that a library was linked with, as its exports tell; empty when it has none. The text is the
// library's.
std::string_view PlatformLinkedName(const clsLibrary& library) noexcept;

// Goes through all images of the address space, from the lowest address up.
class clsImagesInMemory {
  public:
    // Where the next one begins; null after the last.
    const void* Next() noexcept;

  private:
    const char* at_ = nullptr;
    const void* last_ = nullptr;
};

} // namespace tvut
