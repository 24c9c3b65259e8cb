// Owners of the system's objects.
#pragma once

#include <windows.h>

#include <memory>

namespace tool {

struct scCloseHandleOnce {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using clsHandle = std::unique_ptr<void, scCloseHandleOnce>;

// For functions whose handle of failure is not null.
inline clsHandle FileHandle(HANDLE handle) {
    return clsHandle{handle == INVALID_HANDLE_VALUE ? nullptr : handle};
}

struct scUnmap {
    void operator()(const void* view) const { UnmapViewOfFile(view); }
};
template <class T>
using clsView = std::unique_ptr<T, scUnmap>;

} // namespace tool
