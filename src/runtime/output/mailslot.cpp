#include "runtime/output/mailslot.h"

namespace tvut {

// Opened for overlapped writing: where the system lets a write to a full slot wait, it can be taken back.
bool clsMailslot::Open(const wchar_t* name) noexcept {
    Close(); // a handle that is still open can keep a slot in being that nobody reads any more
    file_ = clsFileHandle(CreateFileW(name, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
    if (IsOpen())
        done_ = clsHandle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    return IsOpen();
}

void clsMailslot::Close() noexcept {
    file_.Reset();
    done_.Reset();
}

bool clsMailslot::Write(std::string_view message) noexcept {
    OVERLAPPED write{};
    write.hEvent = done_.Get();
    DWORD written = 0;
    const auto bytes = static_cast<DWORD>(message.size());
    if (!WriteFile(file_.Get(), message.data(), bytes, nullptr, &write) &&
        GetLastError() != ERROR_IO_PENDING) {
        Close();
        return false;
    }
    if (!HasOverlappedIoCompleted(&write))
        CancelIo(file_.Get());
    // Returns at once: the write is done or taken back by now.
    return GetOverlappedResult(file_.Get(), &write, &written, TRUE) && written == bytes;
}

} // namespace tvut
