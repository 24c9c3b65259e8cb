// The log file: lines of 8-bit text, appended.
#pragma once

#include "platform/quick_lock.h"
#include "platform/spin_lock.h"
#include "runtime/output/line_sink.h"
#include "runtime/output/log_file_lock.h"
#include "runtime/output/narrow_line.h"
#include "runtime/output/whole_lines.h"

#include <array>
#include <atomic>

namespace tvut {

class clsLogFile final : public IclsLineSink {
  public:
    // Opens or makes the file for appending; others may read, write, rename and delete it meanwhile.
    void Open(const wchar_t* name, bool flush) noexcept;
    void Close() noexcept { file_.Reset(); }
    bool IsOpen() const noexcept { return static_cast<bool>(file_); }

    bool Wants() noexcept override { return IsOpen(); }

    // Lines are written in two steps. A line is put where there is room, in the order of the calls; then,
    // with the writer's lock left, Commit sees to it that it is in the file when it returns, whatever becomes
    // of this process: handed to the system with whole lines only, and never inside another process's line.
    bool HasRoom() noexcept;
    void Take(const scOutputLine& line) noexcept override;
    std::uint32_t LastTaken() const noexcept { return taken_; }
    void Commit(std::uint32_t line) noexcept;

    // Whether a thread is writing, and whether it is the calling one.
    bool IsWriting() const noexcept { return writing_.IsTaken(); }
    bool IsWritingMine() const noexcept { return writing_.IsMine(); }

  private:
    // Lines that are written with one call.
    class clsPending {
      public:
        bool HasRoom() const noexcept { return length_ + clsNarrowLine::longest <= bytes_.size(); }
        void Put(std::string_view line) noexcept {
            length_ += line.copy(bytes_.data() + length_, line.size());
        }
        std::string_view View() const noexcept { return {bytes_.data(), length_}; }
        void Clear() noexcept { length_ = 0; }

      private:
        std::array<char, 32 * 1024> bytes_;
        std::size_t length_ = 0;
    };

    bool IsWritten(std::uint32_t line) const noexcept;
    bool IsInCrowd() const noexcept { return inCrowd_.load(std::memory_order_relaxed); }
    void WritePending() noexcept;
    void Write(std::string_view lines) noexcept;

    clsFileHandle file_;
    clsLogFileLock lock_;
    clsWholeLines wholeLines_;
    bool flush_ = false;

    clsSpinLock pending_; // which of the two is filled, and what is in it
    std::array<clsPending, 2> lines_;
    std::size_t filling_ = 0;
    std::uint32_t taken_ = 0; // lines; comes round

    clsQuickLock writing_;
    std::atomic<std::uint32_t> written_{0}; // of those that were taken
    std::atomic<bool> inCrowd_{false};      // several lines were written by the last call
};

} // namespace tvut
