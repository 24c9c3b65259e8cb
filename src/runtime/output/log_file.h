// The log file: lines of 8-bit text, appended.
#pragma once

#include "runtime/output/line_sink.h"
#include "runtime/output/log_file_lock.h"
#include "runtime/output/whole_lines.h"

namespace tvut {

class clsLogFile final : public IclsLineSink {
  public:
    // Opens or makes the file for appending; others may read, write, rename and delete it meanwhile.
    void Open(const wchar_t* name, bool flush) noexcept;
    void Close() noexcept { file_.Reset(); }
    bool IsOpen() const noexcept { return static_cast<bool>(file_); }

    bool Wants() noexcept override { return IsOpen(); }

    // Hands the line to the system in one piece, so that it is in the file when the call returns, whatever
    // becomes of this process, and never inside another process's line.
    void Take(const scOutputLine& line) noexcept override;

  private:
    void Write(std::string_view line) noexcept;

    clsFileHandle file_;
    clsLogFileLock lock_;
    clsWholeLines lines_;
    bool flush_ = false;
};

} // namespace tvut
