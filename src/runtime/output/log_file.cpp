#include "runtime/output/log_file.h"

#include <mutex>

namespace tvut {

void clsLogFile::Open(const wchar_t* name, bool flush) noexcept {
    const DWORD everything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    file_ = clsFileHandle(CreateFileW(name, FILE_APPEND_DATA | SYNCHRONIZE, everything, nullptr, OPEN_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    flush_ = flush;
    if (IsOpen())
        lock_.Open(file_.Get());
}

void clsLogFile::Write(std::string_view line) noexcept {
    const std::lock_guard guard(lock_);
    DWORD written = 0;
    WriteFile(file_.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    if (flush_)
        FlushFileBuffers(file_.Get());
}

} // namespace tvut
