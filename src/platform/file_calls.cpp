#include "platform/file_calls.h"

#include "platform/exception.h"

namespace tvut {

void PlatformRequire(BOOL succeeded, const char* what) {
    if (succeeded)
        return;
    const DWORD error = GetLastError(); // before anything else asks the system
    throw clsException(what, error);
}

void PlatformMoveTo(HANDLE file, std::uint64_t position) {
    LARGE_INTEGER distance;
    distance.QuadPart = static_cast<LONGLONG>(position);
    PlatformRequire(SetFilePointerEx(file, distance, nullptr, FILE_BEGIN), "file cannot be positioned");
}

std::uint64_t PlatformSizeOf(HANDLE file) {
    LARGE_INTEGER size;
    PlatformRequire(GetFileSizeEx(file, &size), "file has no size");
    return static_cast<std::uint64_t>(size.QuadPart);
}

void PlatformWriteAll(HANDLE file, const void* data, std::size_t bytes) {
    const char* next = static_cast<const char*>(data);
    while (bytes != 0) {
        DWORD written = 0;
        PlatformRequire(WriteFile(file, next, static_cast<DWORD>(bytes), &written, nullptr),
                        "file cannot be written");
        if (written == 0)
            throw clsException("file takes no bytes", reason::writeFault);
        next += written;
        bytes -= written;
    }
}

} // namespace tvut
