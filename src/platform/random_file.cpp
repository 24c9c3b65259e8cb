#include "platform/random_file.h"

#include "platform/exception.h"
#include "platform/file_calls.h"

namespace tvut {

std::uint64_t clsRandomFile::Size() {
    return PlatformSizeOf(file_);
}

// The position stands in the call: one of the system's, and no other reader of the handle can move it.
std::size_t clsRandomFile::ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) {
    std::size_t done = 0;
    while (done < bytes) {
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(position + done);
        place.OffsetHigh = static_cast<DWORD>((position + done) >> 32);
        DWORD read = 0;
        if (!ReadFile(file_, static_cast<char*>(buffer) + done, static_cast<DWORD>(bytes - done), &read, &place) &&
            GetLastError() != ERROR_HANDLE_EOF)
            PlatformRequire(FALSE, "file cannot be read");
        if (read == 0)
            break;
        done += read;
    }
    return done;
}

} // namespace tvut
