// The log file: lines of 8-bit text, appended.
#pragma once

#include "runtime/output/log_file_lock.h"

#include <string_view>

namespace tvut {

class clsLogFile {
  public:
    // Opens or makes the file for appending; others may read, write, rename and delete it meanwhile.
    void Open(const wchar_t* name, bool flush) noexcept;
    void Close() noexcept { file_.Reset(); }
    bool IsOpen() const noexcept { return static_cast<bool>(file_); }

    // Hands the bytes to the system in one piece, so that they are in the file when the call returns,
    // whatever becomes of this process, and never inside another process's line.
    void Write(std::string_view line) noexcept;

  private:
    clsFileHandle file_;
    clsLogFileLock lock_;
    bool flush_ = false;
};

} // namespace tvut
