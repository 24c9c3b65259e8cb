// Folders that belong to the user of the process, and to nobody else.
#pragma once

#include <windows.h>

namespace tvut {

// Makes a new folder that only the process's user may look into or change, with all that will be in it.
// Result: 0 or the system's error; ERROR_ALREADY_EXISTS for a folder that is there, whoever made it.
DWORD PlatformMakePrivateFolder(const wchar_t* path) noexcept;

// Whether the process's user owns a folder.
bool PlatformIsOwnFolder(const wchar_t* path) noexcept;

// While the object lives, the thread acts for the process's own user, whomever it acts for otherwise. The
// process ends when that one's token cannot be given back.
class clsOwnIdentity {
  public:
    clsOwnIdentity() noexcept;
    ~clsOwnIdentity();
    clsOwnIdentity(const clsOwnIdentity&) = delete;
    clsOwnIdentity& operator=(const clsOwnIdentity&) = delete;

  private:
    HANDLE token_ = nullptr; // of the user for whom the thread acts; null: the process's own
};

} // namespace tvut
