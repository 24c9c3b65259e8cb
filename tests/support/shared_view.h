// Memory that processes share under a name.
#pragma once

#include "files.h"

namespace testing_prof {

template <class T>
class clsSharedView {
  public:
    explicit clsSharedView(const wchar_t* name, std::size_t bytes = sizeof(T))
        : mapping_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      static_cast<DWORD>(bytes), name)),
          view_(static_cast<T*>(MapViewOfFile(mapping_.get(), FILE_MAP_WRITE, 0, 0, 0))) {}
    ~clsSharedView() { UnmapViewOfFile(view_); }
    clsSharedView(const clsSharedView&) = delete;
    clsSharedView& operator=(const clsSharedView&) = delete;

    T* operator->() const { return view_; }
    T& operator*() const { return *view_; }

  private:
    Handle mapping_;
    T* view_;
};

} // namespace testing_prof
