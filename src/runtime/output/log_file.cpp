// The file is opened to append only and shared with everybody, so that several processes write to its end and
// a reader or a rename disturbs nobody. The lock keeps a line whole where the system does not append in one
// step; flushing takes milliseconds and happens outside of it.
//
// Handing lines to the system costs more than making them. So while one thread writes, others put their lines
// beside each other, and whoever comes next writes all of them with one call. Nobody returns before his line
// is written; who waits for that lets others run, who may have lines, too. Once several lines came together,
// whoever writes next lets others run first: a switch of threads, which each of them needs anyway, costs less
// than a write. When a line comes alone again, that ends.
#include "runtime/output/log_file.h"

#include "runtime/output/debugger.h"

#include <mutex>

namespace tvut {

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr unsigned mostLooks = 120; // some ten writes; then the wait is a long one, and a sleep

} // namespace

void clsLogFile::Open(const wchar_t* name, bool flush) noexcept {
    const DWORD everything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    file_ = clsFileHandle(CreateFileW(name, FILE_APPEND_DATA | SYNCHRONIZE, everything, nullptr, OPEN_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    flush_ = flush;
    if (IsOpen() && GetFileType(file_.Get()) != FILE_TYPE_DISK)
        file_.Reset(); // a pipe or a console that nobody drains would hold every writer up
    if (IsOpen())
        lock_.Open(file_.Get());
}

void clsLogFile::Take(const scOutputLine& line) noexcept {
    clsNarrowLine narrow;
    if (!narrow.Set(line.stamped, lineEnd)) {
        UtilpWriteToDebugger(u"ERR converting LOGPAN output");
        return;
    }
    const std::lock_guard guard(pending_);
    lines_[filling_].Put(narrow.View());
    ++taken_;
}

bool clsLogFile::HasRoom() noexcept {
    const std::lock_guard guard(pending_);
    return lines_[filling_].HasRoom();
}

bool clsLogFile::IsWritten(std::uint32_t line) const noexcept {
    return static_cast<std::int32_t>(written_.load(std::memory_order_acquire) - line) >= 0;
}

void clsLogFile::Commit(std::uint32_t line) noexcept {
    for (unsigned looks = 0; !IsWritten(line); ++looks) {
        if (looks == mostLooks) {
            writing_.lock();
        } else if (writing_.IsTaken() || !writing_.try_lock()) {
            if (IsInCrowd())
                SwitchToThread();
            else
                PlatformPause(looks);
            continue;
        }
        const std::lock_guard writing(writing_, std::adopt_lock);
        if (!IsWritten(line)) {
            if (IsInCrowd())
                SwitchToThread(); // others put their lines beside this one
            WritePending();
        }
    }
}

void clsLogFile::WritePending() noexcept {
    std::unique_lock guard(pending_);
    clsPending& full = lines_[filling_];
    filling_ ^= 1;
    const std::uint32_t last = taken_;
    guard.unlock();
    inCrowd_.store(last - written_.load(std::memory_order_relaxed) > 1, std::memory_order_relaxed);
    Write(full.View());
    full.Clear();
    written_.store(last, std::memory_order_release);
}

void clsLogFile::Write(std::string_view lines) noexcept {
    const auto append = [&](std::string_view bytes) -> std::size_t {
        DWORD written = 0;
        WriteFile(file_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        return written;
    };
    {
        const std::lock_guard guard(lock_);
        wholeLines_.Write(lines, append);
    }
    if (flush_)
        FlushFileBuffers(file_.Get());
}

} // namespace tvut
