// Owners of the system's objects.
#ifndef LOGPAN_OWNED_H
#define LOGPAN_OWNED_H

#include <windows.h>

#include <memory>

namespace tool::logpan {

struct CloseHandleOnce {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseHandleOnce>;

// For functions whose handle of failure is not null.
inline Handle fileHandle(HANDLE handle) {
    return Handle{handle == INVALID_HANDLE_VALUE ? nullptr : handle};
}

struct Unmap {
    void operator()(const void* view) const { UnmapViewOfFile(view); }
};
template <class T>
using View = std::unique_ptr<T, Unmap>;

} // namespace tool::logpan

#endif
