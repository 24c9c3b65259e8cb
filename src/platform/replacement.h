// A file that is written anew: the new one takes over what its owner has set on the old one, and its place.
#pragma once

#include "platform/beside_file.h"

namespace tvut {

class clsReplacement {
  public:
    // Refuses a target that is read-only or a folder. Throws clsException, std::bad_alloc.
    explicit clsReplacement(const char16_t* target);

    clsBesideFile& File() { return file_; }
    const clsBesideFile& File() const { return file_; }

    // Puts the new file in the target's place; while somebody keeps the target open, again and again for so
    // many milliseconds. Gives the system's error as clsBesideFile does.
    DWORD PutInPlace(ULONGLONG patience);

  private:
    explicit clsReplacement(const std::wstring& target);

    WIN32_FILE_ATTRIBUTE_DATA targetData_; // all 0 when there was no target
    clsBesideFile file_;
};

} // namespace tvut
