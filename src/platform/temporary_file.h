// A file in the temporary folder that is deleted when its object ends, and with the process at the latest.
#pragma once

#include "platform/owned.h"

namespace tvut {

class clsTemporaryFile {
  public:
    explicit clsTemporaryFile(const wchar_t* prefix); // three characters

    explicit operator bool() const { return static_cast<bool>(file_); }
    HANDLE Get() const { return file_.Get(); } // for reading and writing

  private:
    clsFileHandle file_; // none when it cannot be made; the thread's last error tells why
};

} // namespace tvut
