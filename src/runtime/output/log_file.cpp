// The file is opened to append only and shared with everybody, so that several processes write to its end and
// a reader or a rename disturbs nobody. The lock keeps a line whole where the system does not append in one
// step; flushing takes milliseconds and happens outside of it.
#include "runtime/output/log_file.h"

#include "runtime/output/debugger.h"
#include "runtime/output/narrow_line.h"

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

void clsLogFile::Take(const scOutputLine& line) noexcept {
    clsNarrowLine narrow;
    if (narrow.Set(line.stamped, lineEnd))
        Write(narrow.View());
    else
        UtilpWriteToDebugger(u"ERR converting LOGPAN output");
}

void clsLogFile::Write(std::string_view line) noexcept {
    const auto append = [&](std::string_view bytes) -> std::size_t {
        DWORD written = 0;
        WriteFile(file_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        return written;
    };
    {
        const std::lock_guard guard(lock_);
        lines_.Write(line, append);
    }
    if (flush_)
        FlushFileBuffers(file_.Get());
}

} // namespace tvut
