// The folder for temporary files that a process has for itself: <Temp>\tvUT22\<process>-<start>, both in
// hexadecimal. A file "~lock" in it, which the process holds open without sharing, tells others that it
// lives.
#pragma once

#include "platform/owned.h"

#include <string>

namespace tvut {

// The folder that such folders stand in; empty when the system names no temporary folder. Throws
// std::bad_alloc.
std::wstring UtilpTempRoot();

constexpr const wchar_t* tempLockName = L"~lock";

class clsOwnTempFolder {
  public:
    // Makes the folder if it was not made yet. 0, or the system's error. Throws std::bad_alloc.
    DWORD Make();

    // Full, without a separator at its end; empty while there is none.
    const std::wstring& Path() const noexcept { return path_; }

    // Lets go of the folder, and removes it if nothing is in it.
    void End() noexcept;

  private:
    DWORD MakeNumbered(const std::wstring& root);

    std::wstring path_;
    std::wstring systemPath_; // whatever its length
    std::wstring lockPath_;
    clsFileHandle lock_;
};

} // namespace tvut
