#include "runtime/output/log_file.h"

#include <mutex>

namespace tvut {

namespace {

constexpr std::string_view lineEnd = "\r\n";

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

void clsLogFile::Write(std::string_view line) noexcept {
    {
        const std::lock_guard guard(lock_);
        if (torn_)
            torn_ = Append(lineEnd) < lineEnd.size();
        if (!torn_) {
            const std::size_t written = Append(line);
            torn_ = written > 0 && written < line.size();
        }
    }
    if (flush_) // takes milliseconds, in which others may write
        FlushFileBuffers(file_.Get());
}

std::size_t clsLogFile::Append(std::string_view bytes) noexcept {
    DWORD written = 0;
    WriteFile(file_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    return written;
}

} // namespace tvut
