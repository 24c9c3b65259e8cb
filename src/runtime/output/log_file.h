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
    // whatever becomes of this process, and never inside another process's line. Where a full disk took a
    // part of a line only, the next one that it takes begins a line of its own.
    void Write(std::string_view line) noexcept;

  private:
    std::size_t Append(std::string_view bytes) noexcept; // gives how many bytes the file took

    clsFileHandle file_;
    clsLogFileLock lock_;
    bool flush_ = false;
    bool torn_ = false; // the file ends with a part of a line
};

} // namespace tvut
